#include "support/process_counts.h"

#include <algorithm>
#include <filesystem>

#include "win32_double/control.h"

namespace test_support {

namespace {

std::size_t entries_of(const char* folder)
{
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace

Process_counts process_counts(const char* /*window_class*/)
{
    const auto live = win32_double::live_objects();
    return {{"threads", entries_of("/proc/self/task")},
            {"handles", entries_of("/proc/self/fd")},
            {"log descriptors", live.descriptors},
            {"windows", live.windows},
            {"window classes", live.window_classes},
            {"device notifications", live.device_notifications},
            {"message queues", live.message_queues},
            {"events", live.events},
            {"mutexes", live.mutexes},
            {"thread handles", live.thread_handles}};
}

bool is_no_more_than(const Process_counts& before, const Process_counts& after)
{
    return std::all_of(after.begin(), after.end(),
                       [&](const auto& count) { return count.second <= before.at(count.first); });
}

}  // namespace test_support
