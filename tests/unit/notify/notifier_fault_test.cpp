// Faults that real windows can show.
#include "notify/notifier_window.h"
#include "support.h"

using namespace notify_test;

namespace {

class Notifier_fault_test : public Notifier_test {
protected:
    void TearDown() override
    {
        stop();
        UnregisterClassA(class_name(), GetModuleHandleA(nullptr));
        Notifier_test::TearDown();
    }

    static void register_class(WNDPROC procedure)
    {
        WNDCLASSEXA window_class = {};
        window_class.cbSize = sizeof window_class;
        window_class.lpfnWndProc = procedure;
        window_class.hInstance = GetModuleHandleA(nullptr);
        window_class.lpszClassName = class_name();
        ASSERT_NE(RegisterClassExA(&window_class), 0);
    }
};

TEST_F(Notifier_fault_test, a_class_left_over_is_used_again)
{
    register_class(kvs::brenvozulta::notifier_window_proc);
    expect_service_works();
}

TEST_F(Notifier_fault_test, a_class_with_a_procedure_of_its_own_delivers_nothing_and_the_stop_ends)
{
    register_class(DefWindowProcA);
    start();
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
    plug(device_path);
    EXPECT_TRUE(take_events().empty());
    stop();
    EXPECT_EQ(window(), nullptr);
    expect_service_works();
}

TEST_F(Notifier_fault_test, a_class_whose_procedure_does_not_close_its_window_lets_the_stop_end)
{
    register_class([](HWND handle, UINT message, WPARAM w_param, LPARAM l_param) -> LRESULT {
        return message == WM_CLOSE ? 0 : DefWindowProcA(handle, message, w_param, l_param);
    });
    start();
    stop();
    // The window ends with its thread.
    EXPECT_EQ(window(), nullptr);
}

LRESULT CALLBACK refuse_creation(HWND, UINT, WPARAM, LPARAM)
{
    return 0;
}

TEST_F(Notifier_fault_test, a_window_that_cannot_be_created_is_logged_and_leaves_the_notifier_stopped)
{
    register_class(refuse_creation);
    ASSERT_TRUE(InitUsbNotifier(class_name()));
    stop();
    EXPECT_EQ(captured_log::take(), captured_log::Lines{exception_line("Could not create message window!")});
    // A class that was there before the start stays.
    ASSERT_TRUE(UnregisterClassA(class_name(), GetModuleHandleA(nullptr)));
    expect_service_works();
}

TEST_F(Notifier_fault_test, after_a_failed_start_the_next_start_needs_no_stop)
{
    register_class(refuse_creation);
    ASSERT_TRUE(InitUsbNotifier(class_name()));
    EXPECT_EQ(captured_log::wait(), captured_log::Lines{exception_line("Could not create message window!")});
    ASSERT_TRUE(UnregisterClassA(class_name(), GetModuleHandleA(nullptr)));
    // The failed thread ends by itself. Until it has told so, a start finds the notifier running.
    wait_until([] { return InitUsbNotifier(class_name()) && window() != nullptr; });
    stop();
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Notifier_fault_test, a_start_without_a_class_name_fails_and_can_be_repeated)
{
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(InitUsbNotifier(nullptr));
        EXPECT_TRUE(TerminateUsbNotifier(nullptr));
        EXPECT_EQ(captured_log::take(), captured_log::Lines{exception_line("Could not create message window!")});
    }
    expect_service_works();
}

}  // namespace
