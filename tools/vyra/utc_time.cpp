#include "utc_time.h"

#include <cstdio>
#include <ctime>

namespace vyra_tool {

std::string utc_text(std::chrono::system_clock::time_point time)
{
    using namespace std::chrono;
    const auto milliseconds = duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
    const std::time_t seconds = static_cast<std::time_t>(milliseconds / 1000);
    char day[32];
    std::strftime(day, sizeof day, "%Y-%m-%dT%H:%M:%S", std::gmtime(&seconds));
    char text[48];
    std::snprintf(text, sizeof text, "%s.%03dZ", day, static_cast<int>(milliseconds % 1000));
    return text;
}

}  // namespace vyra_tool
