#include "captured_log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

#include "log/log.h"

namespace {

std::mutex mutex;
std::vector<captured_log::Line> lines;

}  // namespace

void kvs::brenvozulta::log_printf(int level, const char* format, ...) noexcept
{
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    const std::lock_guard<std::mutex> lock(mutex);
    lines.push_back({level, text});
}

std::vector<captured_log::Line> captured_log::take()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return std::exchange(lines, {});
}
