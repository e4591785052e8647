// Faults that only the Win32 double can produce, and what its books say: native builds only.
#include <pthread.h>

#include <win32_double/control.h>
#include <boost/thread/exceptions.hpp>

#include "support.h"

using namespace notify_test;

namespace {

constexpr GUID usb_devices = {0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
constexpr GUID other_devices = {0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xEE}};

class Injected_fault_test : public Notifier_test {
protected:
    void SetUp() override
    {
        Notifier_test::SetUp();
        win32_double::clear();
    }
    void TearDown() override
    {
        win32_double::clear();
        Notifier_test::TearDown();
        const auto live = win32_double::live_objects();
        EXPECT_EQ(live.windows, 0U);
        EXPECT_EQ(live.window_classes, 0U);
        EXPECT_EQ(live.device_notifications, 0U);
        EXPECT_EQ(live.events, 0U);
        EXPECT_EQ(live.thread_handles, 0U);
    }

    // A start with the order to fail given, the log line that it leaves, and a start after it without a stop.
    void expect_failed_start(const std::string& text)
    {
        EXPECT_TRUE(InitUsbNotifier(class_name()));
        EXPECT_EQ(captured_log::wait(), captured_log::Lines{exception_line(text)});
        EXPECT_EQ(window(), nullptr);
        EXPECT_FALSE(class_exists());
        win32_double::clear();
        wait_until([] { return InitUsbNotifier(class_name()) && window() != nullptr; });
        stop();
        expect_service_works();
    }
};

TEST_F(Injected_fault_test, a_class_that_cannot_be_registered_leaves_the_notifier_stopped)
{
    win32_double::fail("RegisterClassExA");
    expect_failed_start("Could not create message window!");
}

TEST_F(Injected_fault_test, a_window_that_cannot_be_created_leaves_the_notifier_stopped)
{
    win32_double::fail("CreateWindowExA");
    expect_failed_start("Could not create message window!");
}

TEST_F(Injected_fault_test, a_refused_registration_leaves_the_notifier_stopped)
{
    win32_double::fail("RegisterDeviceNotificationA");
    expect_failed_start("Could not register for devicenotifications!");
}

// Without a start in between that succeeds.
TEST_F(Injected_fault_test, each_failed_start_tells_its_own_reason)
{
    const auto line_of_a_failed_start = [this](const char* function) {
        win32_double::fail(function);
        EXPECT_TRUE(InitUsbNotifier(class_name()));
        stop();
        win32_double::clear();
        return captured_log::take();
    };
    EXPECT_EQ(line_of_a_failed_start("RegisterDeviceNotificationA"),
              captured_log::Lines{exception_line("Could not register for devicenotifications!")});
    EXPECT_EQ(line_of_a_failed_start("CreateWindowExA"),
              captured_log::Lines{exception_line("Could not create message window!")});
}

TEST_F(Injected_fault_test, a_stop_after_a_failed_start_ends)
{
    for (const char* function : {"RegisterClassExA", "CreateWindowExA", "RegisterDeviceNotificationA"}) {
        win32_double::fail(function);
        EXPECT_TRUE(InitUsbNotifier(class_name()));
        stop();
        const bool registers = function == std::string_view("RegisterDeviceNotificationA");
        EXPECT_EQ(captured_log::take(),
                  captured_log::Lines{exception_line(registers ? "Could not register for devicenotifications!"
                                                               : "Could not create message window!")});
        expect_service_works();
    }
}

TEST_F(Injected_fault_test, an_error_of_the_message_loop_ends_the_thread)
{
    win32_double::fail("GetMessageA");
    EXPECT_TRUE(InitUsbNotifier(class_name()));
    wait_until([] { return win32_double::calls("GetMessageA") == 1 && window() == nullptr; });
    stop();
    expect_service_works();
}

// Whatever fails in it, a stop ends, and with it the thread.
TEST_F(Injected_fault_test, a_stop_with_a_failing_step_ends)
{
    for (const char* function :
         {"SendMessageA", "UnregisterDeviceNotification", "DestroyWindow", "PostThreadMessageA", "UnregisterClassA"}) {
        start();
        win32_double::fail(function);
        stop();
        EXPECT_EQ(window(), nullptr) << function;
        win32_double::clear();
        UnregisterClassA(class_name(), GetModuleHandleA(nullptr));
    }
    expect_service_works();
}

// No thread can be created while the stack that it asks for is larger than the address space.
class Endless_stacks {
public:
    Endless_stacks()
    {
        pthread_getattr_default_np(&usual_);
        pthread_attr_t endless;
        pthread_getattr_default_np(&endless);
        pthread_attr_setstacksize(&endless, std::size_t{1} << 47);
        pthread_setattr_default_np(&endless);
        pthread_attr_destroy(&endless);
    }
    ~Endless_stacks()
    {
        pthread_setattr_default_np(&usual_);
        pthread_attr_destroy(&usual_);
    }

private:
    pthread_attr_t usual_;
};

TEST_F(Injected_fault_test, a_thread_that_cannot_be_created_raises_its_error_and_a_stop_makes_it_good)
{
    expect_service_works();
    win32_double::clear();
    {
        const Endless_stacks endless_stacks;
        EXPECT_THROW(InitUsbNotifier(class_name()), boost::thread_resource_error);
        // The notifier counts as running all the same.
        EXPECT_TRUE(InitUsbNotifier(class_name()));
        EXPECT_EQ(window(), nullptr);
    }
    EXPECT_TRUE(InitUsbNotifier(class_name()));
    EXPECT_EQ(window(), nullptr);
    stop();
    // There was no window to close: that of the start before is none of this one's.
    EXPECT_EQ(win32_double::calls("SendMessageA"), 0U);
    expect_service_works();
}

TEST_F(Injected_fault_test, a_start_without_an_event_raises_its_error_and_a_stop_makes_it_good)
{
    win32_double::fail("CreateEventA");
    EXPECT_THROW(InitUsbNotifier(class_name()), boost::thread_resource_error);
    EXPECT_EQ(win32_double::live_objects().events, 0U);
    // The notifier counts as running all the same.
    EXPECT_TRUE(InitUsbNotifier(class_name()));
    EXPECT_EQ(window(), nullptr);
    stop();
    expect_service_works();
}

// Neither the failed start itself nor one that comes to nothing after it keeps anything.
TEST_F(Injected_fault_test, a_failed_start_is_let_go_of)
{
    const auto holds_nothing = [] {
        const auto live = win32_double::live_objects();
        return live.events == 0 && live.thread_handles == 0;
    };
    win32_double::fail("CreateWindowExA");
    EXPECT_TRUE(InitUsbNotifier(class_name()));
    EXPECT_EQ(captured_log::wait(), captured_log::Lines{exception_line("Could not create message window!")});
    wait_until(holds_nothing);
    win32_double::fail("CreateThread");
    EXPECT_THROW(InitUsbNotifier(class_name()), boost::thread_resource_error);
    EXPECT_TRUE(holds_nothing());
    stop();
    expect_service_works();
}

TEST_F(Injected_fault_test, a_stop_without_an_event_raises_its_error_and_leaves_the_notifier_running)
{
    start();
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
    win32_double::fail("CreateEventA");
    EXPECT_THROW(TerminateUsbNotifier(class_name()), boost::thread_resource_error);
    plug(device_path);
    EXPECT_EQ(take_events(), std::vector<Event>{usb(device_vendor, device_product, UsbDevicePlugged)});
    stop();
    expect_service_works();
}

// As of a thread that acts for another user.
TEST_F(Injected_fault_test, a_stop_that_cannot_open_its_own_thread_stops_all_the_same)
{
    start();
    win32_double::fail("OpenThread");
    stop();
    EXPECT_EQ(window(), nullptr);
    expect_service_works();
}

// It has nothing to wait for, so it needs nothing and cannot fail.
TEST_F(Injected_fault_test, a_stop_of_a_notifier_that_does_not_run_touches_nothing)
{
    win32_double::fail("CreateWindowExA");
    EXPECT_TRUE(InitUsbNotifier(class_name()));
    EXPECT_EQ(captured_log::wait(), captured_log::Lines{exception_line("Could not create message window!")});
    stop();
    win32_double::clear();
    for (const char* function : {"CreateEventA", "OpenThread"}) {
        win32_double::fail(function);
        EXPECT_TRUE(TerminateUsbNotifier(class_name()));
        EXPECT_EQ(win32_double::calls(function), 0U) << function;
    }
}

TEST_F(Injected_fault_test, a_stop_that_cannot_wait_for_messages_still_waits_for_the_thread)
{
    start();
    win32_double::fail("MsgWaitForMultipleObjectsEx", win32_double::always);
    stop();
    EXPECT_EQ(window(), nullptr);
    win32_double::clear();
    expect_service_works();
}

TEST_F(Injected_fault_test, the_window_is_registered_for_usb_devices_and_no_others)
{
    start();
    send(WM_NULL, 0);  // answered once the window, which is there before, has been registered
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
    EXPECT_EQ(win32_double::device_event(DBT_DEVICEARRIVAL, other_devices, device_path), 0U);
    EXPECT_TRUE(take_events().empty());
    EXPECT_EQ(win32_double::device_event(DBT_DEVICEARRIVAL, usb_devices, device_path), 1U);
    EXPECT_EQ(win32_double::device_event(DBT_DEVICEREMOVECOMPLETE, usb_devices, device_path), 1U);
    EXPECT_EQ(take_events(), (std::vector<Event>{usb(device_vendor, device_product, UsbDevicePlugged),
                                                 usb(device_vendor, device_product, UsbDeviceUnplugged)}));
}

TEST_F(Injected_fault_test, the_systems_broadcasts_reach_the_window)
{
    ASSERT_TRUE(SubscribeToPowerEvent(record_power<1>));
    start();
    win32_double::broadcast(WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
    win32_double::broadcast(WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0);
    EXPECT_EQ(take_events(), (std::vector<Event>{power(1, SysPowerSleep), power(1, SysPowerResume)}));
    EXPECT_TRUE(UnsubscribeToPowerEvent(record_power<1>));
}

TEST_F(Injected_fault_test, the_default_procedure_is_never_called)
{
    start();
    send(WM_USER, 0);
    stop();
    EXPECT_EQ(win32_double::calls("DefWindowProcA"), 0U);
}

}  // namespace
