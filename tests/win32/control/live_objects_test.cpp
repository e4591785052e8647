#include <gtest/gtest.h>
#include <io.h>
#include <windows.h>

#include <dbt.h>

#include <thread>

#include "win32_double/control.h"

namespace {

using win32_double::live_objects;

constexpr GUID any_class = {1, 2, 3, {}};

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    return DefWindowProcA(window, message, wparam, lparam);
}

void register_class()
{
    WNDCLASSEXA added{};
    added.cbSize = sizeof added;
    added.lpfnWndProc = procedure;
    added.lpszClassName = "LIVE";
    RegisterClassExA(&added);
}

HWND create_window()
{
    return CreateWindowExA(0, "LIVE", "", WS_OVERLAPPEDWINDOW, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
}

TEST(Live_objects_test, descriptors_are_counted_until_closed)
{
    const auto before = live_objects();
    const int file = _sopen("/dev/null", _O_RDWR, _SH_DENYNO);
    ASSERT_NE(file, -1);
    EXPECT_EQ(live_objects().descriptors, before.descriptors + 1);
    EXPECT_EQ(_close(file), 0);
    EXPECT_EQ(live_objects().descriptors, before.descriptors);
}

TEST(Live_objects_test, classes_windows_and_registrations_are_counted)
{
    const auto before = live_objects();
    register_class();
    const HWND window = create_window();
    DEV_BROADCAST_DEVICEINTERFACE_A filter{sizeof filter, DBT_DEVTYP_DEVICEINTERFACE, 0, any_class, {}};
    const HDEVNOTIFY registration = RegisterDeviceNotificationA(window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
    ASSERT_NE(registration, nullptr);
    const auto during = live_objects();
    EXPECT_EQ(during.window_classes, before.window_classes + 1);
    EXPECT_EQ(during.windows, before.windows + 1);
    EXPECT_EQ(during.device_notifications, before.device_notifications + 1);

    // A registration does not end with its window: forgetting it is a leak.
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_EQ(live_objects().windows, before.windows);
    EXPECT_EQ(live_objects().device_notifications, before.device_notifications + 1);
    EXPECT_TRUE(UnregisterDeviceNotification(registration));
    EXPECT_FALSE(UnregisterDeviceNotification(registration));
    EXPECT_TRUE(UnregisterClassA("LIVE", nullptr));
    EXPECT_EQ(live_objects().window_classes, before.window_classes);
    EXPECT_EQ(live_objects().device_notifications, before.device_notifications);
}

TEST(Live_objects_test, events_are_counted_until_closed)
{
    const auto before = live_objects();
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    EXPECT_EQ(live_objects().events, before.events + 1);
    EXPECT_TRUE(CloseHandle(event));
    EXPECT_EQ(live_objects().events, before.events);
}

TEST(Live_objects_test, mutexes_are_counted_until_closed)
{
    const auto before = live_objects();
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, nullptr);
    EXPECT_EQ(live_objects().mutexes, before.mutexes + 1);
    EXPECT_TRUE(CloseHandle(mutex));
    EXPECT_EQ(live_objects().mutexes, before.mutexes);
}

TEST(Live_objects_test, handles_of_threads_are_counted_until_closed)
{
    const auto before = live_objects();
    const HANDLE self = OpenThread(SYNCHRONIZE, FALSE, GetCurrentThreadId());
    EXPECT_EQ(live_objects().thread_handles, before.thread_handles + 1);
    EXPECT_TRUE(CloseHandle(self));
    EXPECT_EQ(live_objects().thread_handles, before.thread_handles);
}

TEST(Live_objects_test, a_threads_queue_and_windows_end_with_it)
{
    register_class();
    const auto before = live_objects();
    std::thread([&] {
        create_window();
        EXPECT_EQ(live_objects().message_queues, before.message_queues + 1);
        EXPECT_EQ(live_objects().windows, before.windows + 1);
    }).join();
    EXPECT_EQ(live_objects().message_queues, before.message_queues);
    EXPECT_EQ(live_objects().windows, before.windows);
    EXPECT_TRUE(UnregisterClassA("LIVE", nullptr));
}

// The sender's queue and its message are made in one step: when the queue is seen, the message waits.
TEST(Sent_messages_test, are_answered_with_zero_when_their_window_goes)
{
    register_class();
    const HWND window = create_window();
    const auto before = live_objects();
    LRESULT result = 1;
    std::thread sender([&] { result = SendMessageA(window, WM_APP, 0, 0); });
    while (live_objects().message_queues == before.message_queues) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(DestroyWindow(window));
    sender.join();
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(UnregisterClassA("LIVE", nullptr));
}

}  // namespace
