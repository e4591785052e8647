// Subscribers that end the notifier's thread: for Windows builds, where a thread ends without its frames.
#include "support.h"

using namespace notify_test;

namespace {

class Ended_subscriber_test : public Notifier_test {
protected:
    // Returns once the notifier's thread has ended, and with it the window.
    static void expect_no_window()
    {
        wait_until([] { return window() == nullptr; });
    }
};

TEST_F(Ended_subscriber_test, a_stop_ends_when_a_usb_subscriber_has_ended_the_thread)
{
    start();
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, [](int, int, UsbPlugEventType) { ExitThread(0); }));
    plug(device_path);
    expect_no_window();
    stop();
    EXPECT_FALSE(class_exists());
    expect_service_works();
}

TEST_F(Ended_subscriber_test, a_stop_that_waits_ends_with_the_thread)
{
    static std::atomic<bool> inside{false};
    inside = false;
    start();
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, [](int, int, UsbPlugEventType) {
        inside = true;
        // The stop has sent its message once the thread has one to answer.
        wait_until([] { return GetQueueStatus(QS_SENDMESSAGE) != 0; });
        ExitThread(0);
    }));
    std::thread sender([] { plug(device_path); });
    wait_until([] { return inside.load(); });
    stop();
    sender.join();
    expect_service_works();
}

TEST_F(Ended_subscriber_test, the_power_table_is_free_when_a_subscriber_has_ended_the_thread)
{
    const PowerEventCallback subscriber = [](SysPowerEventType) { ExitThread(0); };
    start();
    ASSERT_TRUE(SubscribeToPowerEvent(subscriber));
    sleep();
    expect_no_window();
    EXPECT_TRUE(SubscribeToPowerEvent(record_power<1>));
    EXPECT_TRUE(UnsubscribeToPowerEvent(record_power<1>));
    EXPECT_TRUE(UnsubscribeToPowerEvent(subscriber));
    stop();
    expect_service_works();
}

TEST_F(Ended_subscriber_test, a_stop_ends_when_the_thread_has_ended_before_its_window_was_there)
{
    WNDCLASSEXA window_class = {};
    window_class.cbSize = sizeof window_class;
    window_class.lpfnWndProc = [](HWND, UINT, WPARAM, LPARAM) -> LRESULT { ExitThread(0); };
    window_class.hInstance = GetModuleHandleA(nullptr);
    window_class.lpszClassName = class_name();
    ASSERT_NE(RegisterClassExA(&window_class), 0);
    ASSERT_TRUE(InitUsbNotifier(class_name()));
    stop();
    wait_until([] { return UnregisterClassA(class_name(), GetModuleHandleA(nullptr)) != FALSE; });
    expect_service_works();
}

}  // namespace
