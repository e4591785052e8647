// Starts and stops from inside the service itself.
#include <boost/thread/barrier.hpp>
#include <boost/thread/exceptions.hpp>
#include <boost/thread/thread.hpp>

#include "support.h"

using namespace notify_test;

namespace {

// What the last call from inside returned, or that it raised the resource-deadlock error.
enum class Outcome { none, returned_true, returned_false, deadlock_error, other_error };
std::atomic<Outcome> outcome{Outcome::none};

Outcome stop_here(char* class_name)
{
    try {
        return TerminateUsbNotifier(class_name) ? Outcome::returned_true : Outcome::returned_false;
    } catch (const boost::thread_resource_error& error) {
        return error.code().value() == boost::system::errc::resource_deadlock_would_occur ? Outcome::deadlock_error
                                                                                          : Outcome::other_error;
    }
}

class Notifier_reentry_test : public Notifier_test {
protected:
    void SetUp() override
    {
        Notifier_test::SetUp();
        outcome = Outcome::none;
        start();
    }

    static void stop_inside(int, int, UsbPlugEventType) { outcome = stop_here(class_name()); }
    static void stop_inside_power(SysPowerEventType) { outcome = stop_here(class_name()); }
};

TEST_F(Notifier_reentry_test, a_stop_from_a_usb_subscriber_raises_the_deadlock_error)
{
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, stop_inside));
    plug("VID_0001&PID_0002");
    EXPECT_EQ(outcome, Outcome::deadlock_error);
    EXPECT_EQ(window(), nullptr);
    EXPECT_FALSE(class_exists());
    expect_service_works();
}

TEST_F(Notifier_reentry_test, a_stop_from_a_power_subscriber_raises_the_deadlock_error)
{
    ASSERT_TRUE(SubscribeToPowerEvent(stop_inside_power));
    sleep();
    EXPECT_EQ(outcome, Outcome::deadlock_error);
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(UnsubscribeToPowerEvent(stop_inside_power));
    expect_service_works();
}

TEST_F(Notifier_reentry_test, the_deadlock_error_of_a_subscriber_that_lets_it_out_is_logged)
{
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) { TerminateUsbNotifier(class_name()); }));
    plug("VID_0001&PID_0002");
    const auto lines = captured_log::take();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text.find("Exception : boost thread: trying joining itself"), 0u) << lines[0].text;
    expect_service_works();
}

TEST_F(Notifier_reentry_test, a_start_from_a_usb_subscriber_changes_nothing)
{
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int vendor, int product, UsbPlugEventType type) {
        EXPECT_TRUE(InitUsbNotifier(class_name()));
        record(usb(vendor, product, type));
    }));
    plug("VID_0001&PID_0002");
    plug("VID_0001&PID_0002");
    EXPECT_EQ(take_events().size(), 2u);
}

TEST_F(Notifier_reentry_test, a_subscriber_may_stop_and_start_the_notifier_again)
{
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        outcome = stop_here(class_name());
        EXPECT_TRUE(InitUsbNotifier(class_name()));
        EXPECT_TRUE(SubscribeToUsbEvent(3, 4, record_usb));
    }));
    const HWND first = window();
    plug("VID_0001&PID_0002");
    EXPECT_EQ(outcome, Outcome::deadlock_error);
    wait_until([=] { return window() != nullptr && window() != first; });
    plug("VID_0003&PID_0004");
    EXPECT_EQ(take_events().size(), 1u);
    stop();
    EXPECT_EQ(window(), nullptr);
}

std::atomic<bool> inside{false};
std::atomic<bool> may_return{false};

TEST_F(Notifier_reentry_test, the_next_start_does_not_wait_for_the_subscriber_that_stopped)
{
    inside = may_return = false;
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        outcome = stop_here(class_name());
        inside = true;
        wait_until([] { return may_return.load(); });
        inside = false;
    }));
    boost::thread sender([] { plug("VID_0001&PID_0002"); });
    wait_until([] { return inside.load(); });
    EXPECT_EQ(outcome, Outcome::deadlock_error);
    expect_service_works();
    EXPECT_TRUE(inside);
    may_return = true;
    sender.join();
    wait_until([] { return !inside; });
}

// Whichever of the two stops comes first, both end, and the service is usable afterwards.
TEST_F(Notifier_reentry_test, a_stop_from_a_subscriber_and_one_from_outside_both_end)
{
    for (int round = 0; round < 50; ++round) {
        inside = may_return = false;
        outcome = Outcome::none;
        start();
        ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
            inside = true;
            wait_until([] { return may_return.load(); });
            outcome = stop_here(class_name());
        }));
        boost::thread sender([] { plug("VID_0001&PID_0002"); });
        wait_until([] { return inside.load(); });
        boost::thread outside([] { EXPECT_TRUE(TerminateUsbNotifier(class_name())); });
        may_return = true;
        outside.join();
        sender.join();
        wait_until([] { return outcome != Outcome::none; });
        EXPECT_TRUE(outcome == Outcome::deadlock_error || outcome == Outcome::returned_true);
        ASSERT_EQ(window(), nullptr);
    }
    expect_service_works();
}

TEST_F(Notifier_reentry_test, a_start_from_a_subscriber_and_a_stop_from_outside_both_end)
{
    for (int round = 0; round < 50; ++round) {
        inside = may_return = false;
        start();
        ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
            inside = true;
            wait_until([] { return may_return.load(); });
            EXPECT_TRUE(InitUsbNotifier(class_name()));
        }));
        boost::thread sender([] { plug("VID_0001&PID_0002"); });
        wait_until([] { return inside.load(); });
        boost::thread outside([] { EXPECT_TRUE(TerminateUsbNotifier(class_name())); });
        may_return = true;
        outside.join();
        sender.join();
        ASSERT_EQ(window(), nullptr);
    }
    expect_service_works();
}

// A window of the stopping thread. While that thread waits for its own message to be handled, messages reach it: here
// one by which a subscriber asks it to stop and start the notifier.
class Stopping_window {
public:
    Stopping_window()
    {
        WNDCLASSEXA window_class = {};
        window_class.cbSize = sizeof window_class;
        window_class.lpfnWndProc = procedure;
        window_class.hInstance = GetModuleHandleA(nullptr);
        window_class.lpszClassName = name;
        RegisterClassExA(&window_class);
        handle = CreateWindowExA(0, name, "", WS_OVERLAPPEDWINDOW, 0, 0, 1, 1, nullptr, nullptr,
                                 GetModuleHandleA(nullptr), nullptr);
        notifier_class = nullptr;
    }
    ~Stopping_window()
    {
        DestroyWindow(handle);
        UnregisterClassA(name, GetModuleHandleA(nullptr));
    }
    static inline std::atomic<HWND> handle{nullptr};
    static inline std::atomic<char*> notifier_class{nullptr};

private:
    static constexpr const char* name = "STOPPING_WINDOW";

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM w_param, LPARAM l_param)
    {
        if (message != WM_APP) {
            return DefWindowProcA(window, message, w_param, l_param);
        }
        outcome = stop_here(notifier_class);
        EXPECT_TRUE(InitUsbNotifier(notifier_class));
        return 1;
    }
};

TEST_F(Notifier_reentry_test, a_message_that_reaches_the_stopping_thread_may_stop_and_start)
{
    inside = may_return = false;
    const Stopping_window stopping_window;
    Stopping_window::notifier_class = class_name();
    ASSERT_NE(Stopping_window::handle.load(), nullptr);
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        inside = true;
        EXPECT_EQ(SendMessageA(Stopping_window::handle, WM_APP, 0, 0), 1);
    }));
    boost::thread sender([] { plug("VID_0001&PID_0002"); });
    wait_until([] { return inside.load(); });
    stop();
    sender.join();
    EXPECT_EQ(outcome, Outcome::returned_true);
    EXPECT_EQ(window(), nullptr);
}

}  // namespace
