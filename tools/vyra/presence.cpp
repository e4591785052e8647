#include "presence.h"

#include <map>
#include <mutex>

namespace vyra_tool {
namespace {

// Guards counts. Taken on a thread of the scanner's driver with the library's own lock held: the library must not be
// called while it is held.
std::mutex mutex;

std::map<std::string, Presence>& counts()
{
    static std::map<std::string, Presence> all;
    return all;
}

}  // namespace

Presence presence(const std::string& scanner)
{
    const std::lock_guard lock(mutex);
    const auto found = counts().find(scanner);
    return found != counts().end() ? found->second : Presence();
}

void clear_presence()
{
    const std::lock_guard lock(mutex);
    counts().clear();
}

std::int32_t count_device_event(std::int32_t, const char* name, std::int32_t plugged)
{
    const std::lock_guard lock(mutex);
    Presence& count = counts()[name];
    ++(plugged != 0 ? count.arrivals : count.removals);
    return 0;
}

}  // namespace vyra_tool
