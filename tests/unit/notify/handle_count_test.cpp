// The operating system's own books after many cycles: Windows builds only.
#include "support.h"

#include <tlhelp32.h>

using namespace notify_test;

namespace {

using Handle_count_test = Notifier_test;

DWORD handle_count()
{
    DWORD count = 0;
    EXPECT_TRUE(GetProcessHandleCount(GetCurrentProcess(), &count));
    return count;
}

int thread_count()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

TEST_F(Handle_count_test, two_hundred_cycles_leave_handles_and_threads_where_they_were)
{
    const auto cycle = [] {
        ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
        plug(device_path);
        unplug(device_path);
        ASSERT_EQ(take_events().size(), 2u);
    };
    // What is made on first use is made before the count.
    start();
    cycle();
    stop();
    const DWORD handles = handle_count();
    const int threads = thread_count();
    for (int round = 0; round < 200; ++round) {
        start();
        cycle();
        stop();
    }
    EXPECT_EQ(handle_count(), handles);
    EXPECT_EQ(thread_count(), threads);
}

}  // namespace
