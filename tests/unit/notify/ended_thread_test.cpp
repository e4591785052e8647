// Threads that end in the middle of what others wait for.
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/thread.hpp>

#include <thread>

#include "notify/waiting.h"
#include "support.h"
#include "support/host_window.h"

using namespace notify_test;
using kvs::brenvozulta::dispatch_mutex;
using test_support::Host_window;

namespace {

TEST(Dispatch_mutex_test, is_free_when_its_owner_has_ended)
{
    dispatch_mutex mutex;
    std::thread([&] {
        mutex.lock();
        mutex.lock();
    }).join();
    for (int round = 0; round < 2; ++round) {
        const boost::lock_guard<dispatch_mutex> lock(mutex);
        const boost::lock_guard<dispatch_mutex> again(mutex);
    }
    std::thread([&] { const boost::lock_guard<dispatch_mutex> lock(mutex); }).join();
}

class Ended_thread_test : public Notifier_test {
protected:
    void SetUp() override
    {
        Notifier_test::SetUp();
        creating = may_create = false;
    }
    void TearDown() override
    {
        stop();
        UnregisterClassA(slow_class, GetModuleHandleA(nullptr));
        Notifier_test::TearDown();
    }

    // A class whose windows take their time and are then refused.
    static inline char slow_class[] = "SLOW_CLASS";
    static inline std::atomic<bool> creating{false};
    static inline std::atomic<bool> may_create{false};

    static void register_slow_class()
    {
        WNDCLASSEXA window_class = {};
        window_class.cbSize = sizeof window_class;
        window_class.lpfnWndProc = [](HWND, UINT message, WPARAM, LPARAM) -> LRESULT {
            if (message == WM_NCCREATE) {
                creating = true;
                wait_until([] { return may_create.load(); });
            }
            return 0;
        };
        window_class.hInstance = GetModuleHandleA(nullptr);
        window_class.lpszClassName = slow_class;
        ASSERT_NE(RegisterClassExA(&window_class), 0);
    }
};

// A stop whose thread ends while it waits is over. What it waited for goes on, and is no business of the next start's.
TEST_F(Ended_thread_test, a_stop_ends_with_its_thread_and_the_thread_it_awaited_does_not_stop_the_next_start)
{
    register_slow_class();
    ASSERT_TRUE(InitUsbNotifier(slow_class));
    wait_until([] { return creating.load(); });

    std::atomic<bool> window_made{false};
    std::thread stopping([&] {
        const Host_window host_window([] { ExitThread(0); });
        window_made = true;
        TerminateUsbNotifier(slow_class);
        ADD_FAILURE() << "the thread was to end in the stop";
    });
    wait_until([&] { return window_made.load(); });
    EXPECT_EQ(Host_window::send(), 0);
    stopping.join();

    start();
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
    may_create = true;
    EXPECT_EQ(captured_log::wait(), captured_log::Lines{exception_line("Could not create message window!")});
    // The failed thread has gone when its class can be taken back. A start that found the notifier stopped would clear
    // the subscriptions.
    wait_until([] { return UnregisterClassA(slow_class, GetModuleHandleA(nullptr)) != FALSE; });
    EXPECT_TRUE(InitUsbNotifier(class_name()));
    plug(device_path);
    EXPECT_EQ(take_events(), std::vector<Event>{usb(device_vendor, device_product, UsbDevicePlugged)});
}

TEST_F(Ended_thread_test, a_thread_that_waits_for_the_power_table_answers_messages)
{
    static std::atomic<bool> inside{false};
    static std::atomic<bool> answered{false};
    inside = answered = false;
    const PowerEventCallback subscriber = [](SysPowerEventType) {
        inside = true;
        EXPECT_EQ(Host_window::send(), Host_window::handled);
        answered = true;
    };
    start();
    const Host_window host_window([] {});
    ASSERT_TRUE(SubscribeToPowerEvent(subscriber));
    boost::thread sender([] { sleep(); });
    wait_until([] { return inside.load(); });
    EXPECT_TRUE(UnsubscribeToPowerEvent(subscriber));
    EXPECT_TRUE(answered);
    sender.join();
}

}  // namespace
