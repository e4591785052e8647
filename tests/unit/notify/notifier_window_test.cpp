// The hidden window itself: its class, its styles, its procedure.
#include "notify/notifier_window.h"

#include "support.h"

using kvs::brenvozulta::notifier_window_proc;
using namespace notify_test;

namespace {

using Notifier_window_test = Notifier_test;

TEST_F(Notifier_window_test, the_class_belongs_to_the_host_and_has_the_notifiers_procedure)
{
    start();
    WNDCLASSEXA window_class = {};
    window_class.cbSize = sizeof window_class;
    ASSERT_TRUE(GetClassInfoExA(GetModuleHandleA(nullptr), class_name(), &window_class));
    EXPECT_EQ(window_class.style, static_cast<UINT>(CS_HREDRAW | CS_VREDRAW));
    EXPECT_EQ(window_class.lpfnWndProc, notifier_window_proc);
    EXPECT_EQ(window_class.cbClsExtra, 0);
    EXPECT_EQ(window_class.cbWndExtra, 0);
    EXPECT_EQ(window_class.hIcon, nullptr);
    EXPECT_EQ(window_class.hCursor, nullptr);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(window_class.hbrBackground), 5);
    EXPECT_EQ(window_class.lpszMenuName, nullptr);
}

TEST_F(Notifier_window_test, the_window_is_top_level_and_has_its_styles)
{
    start();
    const LONG_PTR style = GetWindowLongPtrA(window(), GWL_STYLE);
    EXPECT_EQ(style & WS_OVERLAPPEDWINDOW, WS_OVERLAPPEDWINDOW);
    constexpr LONG_PTR visible = 0x10000000;
    EXPECT_EQ(style & visible, 0);
    EXPECT_EQ(GetWindowLongPtrA(window(), GWL_EXSTYLE) & 0x40200, 0x40200);
    EXPECT_EQ(GetWindowLongPtrA(window(), GWLP_HWNDPARENT), 0);
}

// The default procedure would answer some of these otherwise, and would store a title.
TEST_F(Notifier_window_test, unlisted_messages_have_no_effect_and_the_result_0)
{
    start();
    const HWND target = window();
    for (UINT message = 0; message <= 0xFFFF; ++message) {
        if (message == WM_CREATE || message == WM_DESTROY || message == WM_CLOSE) {
            continue;
        }
        ASSERT_EQ(notifier_window_proc(target, message, 0, 0), message == WM_NCCREATE ? 1 : 0) << message;
    }
    constexpr UINT set_text = 0x000C;
    constexpr UINT get_text_length = 0x000E;
    EXPECT_EQ(send(set_text, 0, reinterpret_cast<LPARAM>("a title")), 0);
    EXPECT_EQ(send(get_text_length, 0), 0);
    EXPECT_NE(window(), nullptr);
}

// What the system sends for other events, and what anybody may send: the procedure is called as the system calls it.
TEST_F(Notifier_window_test, of_all_device_events_only_arrival_and_removal_are_delivered)
{
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
    const Device_record record(device_path);
    for (WPARAM event = 0; event <= 0xFFFF; ++event) {
        ASSERT_EQ(notifier_window_proc(nullptr, WM_DEVICECHANGE, event, record.address()), 0) << event;
    }
    EXPECT_EQ(take_events(), (std::vector<Event>{usb(device_vendor, device_product, UsbDevicePlugged),
                                                 usb(device_vendor, device_product, UsbDeviceUnplugged)}));
}

TEST_F(Notifier_window_test, of_all_power_events_only_suspend_and_resume_are_delivered)
{
    ASSERT_TRUE(SubscribeToPowerEvent(record_power<1>));
    for (WPARAM event = 0; event <= 0xFFFF; ++event) {
        ASSERT_EQ(notifier_window_proc(nullptr, WM_POWERBROADCAST, event, 0), 0) << event;
    }
    EXPECT_EQ(take_events(), (std::vector<Event>{power(1, SysPowerSleep), power(1, SysPowerResume)}));
    EXPECT_TRUE(UnsubscribeToPowerEvent(record_power<1>));
}

// Only the two delivered events are looked into: the parameter of the others need not point at a record.
TEST_F(Notifier_window_test, the_record_of_other_device_events_is_not_touched)
{
    for (const WPARAM event : std::initializer_list<WPARAM>{DBT_DEVNODES_CHANGED, DBT_DEVICEQUERYREMOVE,
                                                            DBT_DEVICEREMOVEPENDING, DBT_CUSTOMEVENT}) {
        EXPECT_EQ(notifier_window_proc(nullptr, WM_DEVICECHANGE, event, 1), 0) << event;
    }
}

TEST_F(Notifier_window_test, destroying_the_window_from_elsewhere_ends_the_thread)
{
    start();
    EXPECT_EQ(send(WM_CLOSE, 0), 0);
    EXPECT_EQ(window(), nullptr);
    // Nobody has stopped the notifier: it counts as running, delivers nothing, and can be stopped.
    EXPECT_TRUE(InitUsbNotifier(class_name()));
    EXPECT_EQ(window(), nullptr);
    stop();
    EXPECT_FALSE(class_exists());
    expect_service_works();
}

TEST_F(Notifier_window_test, a_quit_from_a_subscriber_ends_the_thread_and_the_stop_still_ends)
{
    start();
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) { PostQuitMessage(0); }));
    plug("VID_0001&PID_0002");
    stop();
    EXPECT_EQ(window(), nullptr);
    expect_service_works();
}

}  // namespace
