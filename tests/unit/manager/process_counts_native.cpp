#include "process_counts.h"

#include <filesystem>

#include "win32_double/control.h"

namespace manager_tests {

namespace {

std::size_t entries_of(const char* folder)
{
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace

std::map<std::string, std::size_t> process_counts()
{
    const auto live = win32_double::live_objects();
    return {{"threads", entries_of("/proc/self/task")}, {"handles", entries_of("/proc/self/fd")},
            {"log descriptors", live.descriptors},      {"windows", live.windows},
            {"window classes", live.window_classes},    {"device notifications", live.device_notifications},
            {"message queues", live.message_queues}};
}

std::size_t late_handles()
{
    return 0;
}

}  // namespace manager_tests
