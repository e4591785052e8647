// Start and stop of the notifier.
#include <boost/thread/barrier.hpp>
#include <boost/thread/thread.hpp>

#include "support.h"

using namespace notify_test;

namespace {

using Notifier_lifecycle_test = Notifier_test;

TEST_F(Notifier_lifecycle_test, stopping_twice_is_true_both_times)
{
    start();
    EXPECT_TRUE(TerminateUsbNotifier(class_name()));
    EXPECT_TRUE(TerminateUsbNotifier(class_name()));
}

TEST_F(Notifier_lifecycle_test, a_stop_leaves_neither_window_nor_class)
{
    start();
    EXPECT_TRUE(class_exists());
    stop();
    EXPECT_EQ(window(), nullptr);
    EXPECT_FALSE(class_exists());
}

TEST_F(Notifier_lifecycle_test, a_second_start_changes_nothing)
{
    start();
    const HWND first = window();
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
    EXPECT_TRUE(InitUsbNotifier(class_name()));
    EXPECT_EQ(window(), first);
    plug(device_path);
    EXPECT_EQ(take_events().size(), 1U);
}

TEST_F(Notifier_lifecycle_test, a_start_erases_subscriptions_made_while_stopped)
{
    EXPECT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
    start();
    plug(device_path);
    EXPECT_TRUE(take_events().empty());
    EXPECT_FALSE(UnSubscribeToUsbEvent(device_vendor, device_product));
}

TEST_F(Notifier_lifecycle_test, a_stop_keeps_the_subscriptions)
{
    start();
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
    stop();
    EXPECT_TRUE(UnSubscribeToUsbEvent(device_vendor, device_product));
}

TEST_F(Notifier_lifecycle_test, power_subscriptions_survive_stop_and_start)
{
    ASSERT_TRUE(SubscribeToPowerEvent(record_power<1>));
    start();
    stop();
    start();
    sleep();
    EXPECT_EQ(take_events(), std::vector<Event>{power(1, SysPowerSleep)});
    EXPECT_TRUE(UnsubscribeToPowerEvent(record_power<1>));
}

TEST_F(Notifier_lifecycle_test, with_the_notifier_stopped_subscribers_are_not_called)
{
    ASSERT_TRUE(SubscribeToPowerEvent(record_power<1>));
    start();
    const HWND closed = window();
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
    stop();
    const Device_record record(device_path);
    SendMessageA(closed, WM_DEVICECHANGE, DBT_DEVICEARRIVAL, record.address());
    SendMessageA(closed, WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
    EXPECT_TRUE(take_events().empty());
    EXPECT_TRUE(UnsubscribeToPowerEvent(record_power<1>));
}

TEST_F(Notifier_lifecycle_test, every_cycle_delivers_its_events)
{
    ASSERT_TRUE(SubscribeToPowerEvent(record_power<1>));
    for (int cycle = 0; cycle < 100; ++cycle) {
        start();
        ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
        plug(device_path);
        unplug(device_path);
        sleep();
        resume();
        stop();
        ASSERT_EQ(take_events(), (std::vector<Event>{usb(device_vendor, device_product, UsbDevicePlugged),
                                                     usb(device_vendor, device_product, UsbDeviceUnplugged),
                                                     power(1, SysPowerSleep), power(1, SysPowerResume)}));
    }
    EXPECT_TRUE(UnsubscribeToPowerEvent(record_power<1>));
}

// The stop meets the thread before it runs, while it registers the class, creates the window, enters its loop.
TEST_F(Notifier_lifecycle_test, a_stop_at_any_moment_of_a_start_ends)
{
    for (int moment = 0; moment < 200; ++moment) {
        ASSERT_TRUE(InitUsbNotifier(class_name()));
        for (volatile int delay = 0; delay < moment * 2000; delay = delay + 1) {
        }
        ASSERT_TRUE(TerminateUsbNotifier(class_name()));
        ASSERT_EQ(window(), nullptr);
        ASSERT_FALSE(class_exists());
    }
    expect_service_works();
}

TEST_F(Notifier_lifecycle_test, starts_and_stops_from_several_threads_at_once_end)
{
    boost::barrier all_there(3);
    boost::thread_group threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.create_thread([&] {
            all_there.wait();
            for (int round = 0; round < 50; ++round) {
                EXPECT_TRUE(InitUsbNotifier(class_name()));
                EXPECT_TRUE(TerminateUsbNotifier(class_name()));
                // Whoever stopped it has waited to the end; another thread may have started it again.
            }
        });
    }
    threads.join_all();
    EXPECT_EQ(window(), nullptr);
    EXPECT_FALSE(class_exists());
    expect_service_works();
}

std::atomic<bool> inside{false};
std::atomic<bool> may_return{false};

TEST_F(Notifier_lifecycle_test, a_second_stop_waits_for_the_first)
{
    inside = may_return = false;
    start();
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) {
        inside = true;
        wait_until([] { return may_return.load(); });
        inside = false;
    }));
    boost::thread sender([] { plug("VID_0001&PID_0002"); });
    wait_until([] { return inside.load(); });
    boost::barrier both_there(3);
    const auto stop_outside = [&] {
        both_there.wait();
        EXPECT_TRUE(TerminateUsbNotifier(class_name()));
        // The notifier thread has ended, and so has its subscriber.
        EXPECT_FALSE(inside);
        EXPECT_EQ(window(), nullptr);
    };
    boost::thread first(stop_outside);
    boost::thread second(stop_outside);
    both_there.wait();
    may_return = true;
    first.join();
    second.join();
    sender.join();
}

// The stop waits for the window and for the thread, and both waits could be interrupted.
TEST_F(Notifier_lifecycle_test, a_stop_on_an_interrupted_thread_goes_through)
{
    for (int round = 0; round < 20; ++round) {
        std::atomic<bool> stopped{false};
        boost::thread stopper([&] {
            wait_until([] { return boost::this_thread::interruption_requested(); });
            EXPECT_TRUE(InitUsbNotifier(class_name()));
            stopped = TerminateUsbNotifier(class_name());
        });
        stopper.interrupt();
        stopper.join();
        ASSERT_TRUE(stopped);
        ASSERT_EQ(window(), nullptr);
    }
}

}  // namespace
