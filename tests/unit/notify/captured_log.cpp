#include "captured_log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

#include "log/log.h"
#include "support/waiting.h"

namespace {

std::mutex lines_mutex;  // guards the lines
captured_log::Lines lines;

}  // namespace

void kvs::brenvozulta::log_printf(int level, const char* format, ...) noexcept
{
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    const std::lock_guard<std::mutex> lock(lines_mutex);
    lines.push_back({level, text});
}

captured_log::Lines captured_log::take()
{
    const std::lock_guard<std::mutex> lock(lines_mutex);
    return std::exchange(lines, {});
}

captured_log::Lines captured_log::wait()
{
    Lines taken;
    EXPECT_TRUE(test_support::becomes_true([&] { return !(taken = take()).empty(); })) << "no line came";
    return taken;
}
