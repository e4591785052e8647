// Starts and stops from inside the service itself.
#include <boost/thread/barrier.hpp>
#include <boost/thread/exceptions.hpp>
#include <boost/thread/thread.hpp>

#include "support.h"
#include "support/host_window.h"

using namespace notify_test;
using test_support::Host_window;

namespace {

// What the last call from inside returned, or that it raised the resource-deadlock error.
enum class Outcome { none, returned_true, returned_false, deadlock_error, other_error };
std::atomic<Outcome> outcome{Outcome::none};

// Whether a subscriber is at work, and whether it may go on.
std::atomic<bool> inside{false};
std::atomic<bool> may_return{false};

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
        inside = may_return = false;
        start();
    }

    static void stop_inside(int, int, UsbPlugEventType) { outcome = stop_here(class_name()); }
    static void stop_inside_power(SysPowerEventType) { outcome = stop_here(class_name()); }

    static void stop_and_start()
    {
        outcome = stop_here(class_name());
        EXPECT_TRUE(InitUsbNotifier(class_name()));
    }

    // Announces a scanner on a thread of its own; when this returns, the subscriber that is told of it is inside.
    static boost::thread plug_until_inside()
    {
        boost::thread sender([] { plug("VID_0001&PID_0002"); });
        wait_until([] { return inside.load(); });
        return sender;
    }

    // Inside a subscriber: until the stop has closed the window and has only the thread left to wait for.
    static void wait_until_window_closed()
    {
        const HWND open = window();
        wait_until([=] {
            MSG message;
            PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
            return !IsWindow(open);
        });
    }
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
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].text.find("Exception : boost thread: trying joining itself"), 0U) << lines[0].text;
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
    EXPECT_EQ(take_events().size(), 2U);
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
    EXPECT_EQ(take_events().size(), 1U);
    stop();
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Notifier_reentry_test, the_next_start_does_not_wait_for_the_subscriber_that_stopped)
{
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        outcome = stop_here(class_name());
        inside = true;
        wait_until([] { return may_return.load(); });
        inside = false;
    }));
    boost::thread sender = plug_until_inside();
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
        boost::thread sender = plug_until_inside();
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
        boost::thread sender = plug_until_inside();
        boost::thread outside([] { EXPECT_TRUE(TerminateUsbNotifier(class_name())); });
        may_return = true;
        outside.join();
        sender.join();
        ASSERT_EQ(window(), nullptr);
    }
    expect_service_works();
}

TEST_F(Notifier_reentry_test, a_message_that_reaches_the_stopping_thread_may_stop_and_start)
{
    const Host_window host_window(stop_and_start);
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        inside = true;
        EXPECT_EQ(Host_window::send(), Host_window::handled);
    }));
    boost::thread sender = plug_until_inside();
    stop();
    sender.join();
    EXPECT_EQ(outcome, Outcome::returned_true);
    EXPECT_EQ(window(), nullptr);
}

// The usual host stops on the thread that has its windows, and its subscribers send to them.
TEST_F(Notifier_reentry_test, the_stopping_thread_answers_messages_while_it_waits_for_the_notifier_thread)
{
    const Host_window host_window(stop_and_start);
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        inside = true;
        wait_until_window_closed();
        EXPECT_EQ(Host_window::send(), Host_window::handled);
    }));
    boost::thread sender = plug_until_inside();
    stop();
    sender.join();
    EXPECT_EQ(outcome, Outcome::returned_true);
    EXPECT_EQ(window(), nullptr);
}

// What such a message posts is the host's own and stays for its own loop.
TEST_F(Notifier_reentry_test, a_stop_leaves_posted_messages_to_the_host)
{
    const DWORD self = GetCurrentThreadId();
    const Host_window host_window([] {});
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        inside = true;
        wait_until_window_closed();
        EXPECT_EQ(Host_window::send(), Host_window::handled);
    }));
    boost::thread sender = plug_until_inside();
    ASSERT_TRUE(PostThreadMessageA(self, WM_APP, 3, 4));
    stop();
    sender.join();
    MSG message;
    ASSERT_TRUE(PeekMessageA(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
    EXPECT_EQ(message.wParam, 3U);
    EXPECT_EQ(message.lParam, 4);
}

std::atomic<bool> closed{false};

TEST_F(Notifier_reentry_test, a_second_stop_answers_messages_while_it_waits_for_the_first)
{
    closed = false;
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        inside = true;
        wait_until_window_closed();
        closed = true;
        EXPECT_EQ(Host_window::send(), Host_window::handled);
        inside = false;
    }));
    boost::barrier window_made(2);
    boost::thread second([&] {
        const Host_window host_window([] {});
        window_made.wait();
        wait_until([] { return closed.load(); });
        EXPECT_TRUE(TerminateUsbNotifier(class_name()));
        EXPECT_FALSE(inside);
    });
    window_made.wait();
    boost::thread sender = plug_until_inside();
    stop();
    sender.join();
    second.join();
}

}  // namespace
