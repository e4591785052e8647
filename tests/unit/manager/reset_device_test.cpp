// Resetting a scanner and waiting for its return.
#include "manager_test.h"

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const std::string not_detected = "reset_device:    device->reset is OK but no device detected after 2000 ms \n";

class Reset_device_test : public Manager_test {
protected:
    // The plug event alone: the two events of a restart reach the manager lock in no certain order.
    static void restart_with(std::uint32_t delay_ms, bool returns)
    {
        const brenvozulta_sim_restart restart = {delay_ms, returns ? 1 : 0, 0};
        ASSERT_EQ(brenvozulta_sim_set_restart(&restart), 1);
    }
};

}  // namespace

TEST_F(Reset_device_test, returns_0_when_the_scanner_comes_back)
{
    open_scanners(1);
    restart_with(50, true);
    EXPECT_EQ(VyraBusReset_N(0), VYRA_OK);
    EXPECT_TRUE(access::device_detected());
    EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_ResetDevice", "QXDR_GetUsbInfo"}));
    EXPECT_EQ(take_log(), plug_lines());
    EXPECT_NE(access::open_devices().find(0), nullptr) << "the handle stays";
}

TEST_F(Reset_device_test, waits_for_a_return_after_the_driver_call)
{
    open_scanners(1);
    restart_with(500, true);
    EXPECT_EQ(VyraBusReset_N(0), VYRA_OK);
    EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    EXPECT_EQ(take_log(), plug_lines());
}

TEST_F(Reset_device_test, a_return_that_never_comes_is_9005)
{
    open_scanners(1);
    restart_with(0, false);
    EXPECT_EQ(VyraBusReset_N(0), VYRA_DEVICE_UNAVAIL);
    EXPECT_THAT(take_log(), ElementsAre(not_detected));
    EXPECT_FALSE(access::device_detected());
}

// A detection of some time ago is not the return that is waited for.
TEST_F(Reset_device_test, forgets_earlier_detections_before_the_driver_call)
{
    open_scanners(1);
    restart_with(0, false);
    access::set_device_detected(true);
    brenvozulta_sim_block("QXDR_ResetDevice");
    auto resetting = std::async(std::launch::async, [] { return VyraBusReset_N(0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_ResetDevice", 1, patience_ms), 1);
    EXPECT_FALSE(access::device_detected());
    brenvozulta_sim_unblock("QXDR_ResetDevice");
    EXPECT_EQ(resetting.get(), VYRA_DEVICE_UNAVAIL);
    EXPECT_THAT(take_log(), ElementsAre(not_detected));
}

// The listener sets the flag before it waits for the manager lock, which the reset holds.
TEST_F(Reset_device_test, listener_sets_the_flag_while_the_reset_holds_the_lock)
{
    open_scanners(1);
    restart_with(0, false);
    brenvozulta_sim_block("QXDR_ResetDevice");
    auto resetting = std::async(std::launch::async, [] { return VyraBusReset_N(0); });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_ResetDevice", 1, patience_ms), 1);
    brenvozulta_sim_attach(scanner_2);
    brenvozulta_sim_send_event(1, brenvozulta_sim_handle(scanner_2));
    EXPECT_TRUE(becomes_true([] { return access::device_detected(); }));
    EXPECT_EQ(brenvozulta_sim_wait_listener_inside(1, patience_ms), 1);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_GetUsbInfo"), 0U) << "the lock is held";
    brenvozulta_sim_unblock("QXDR_ResetDevice");
    EXPECT_EQ(resetting.get(), VYRA_OK);
    EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_GetUsbInfo"), 1U);
    EXPECT_EQ(take_log(), plug_lines());
}

TEST_F(Reset_device_test, unplug_during_the_wait_takes_the_detection_back)
{
    open_scanners(1);
    restart_with(0, false);
    brenvozulta_sim_block("QXDR_ResetDevice");
    auto resetting = std::async(std::launch::async, [] { return VyraBusReset_N(0); });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_ResetDevice", 1, patience_ms), 1);
    access::set_device_detected(true);
    brenvozulta_sim_send_event(2, nullptr);
    EXPECT_TRUE(becomes_true([] { return !access::device_detected(); }));
    brenvozulta_sim_unblock("QXDR_ResetDevice");
    EXPECT_EQ(resetting.get(), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    EXPECT_EQ(take_log(), joined({unplug_lines(),
                                  {"reset_device:    device->reset is OK but no device detected after 2000 ms \n"}}));
}

TEST_F(Reset_device_test, refusal_of_the_driver_is_returned_at_once_and_not_logged_again)
{
    open_scanners(1);
    brenvozulta_sim_fail("QXDR_ResetDevice", driver_timeout, 1);
    EXPECT_EQ(VyraBusReset_N(0), VYRA_DEVICE_TIMEOUT);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_ResetDevice ret = 9 \n"));
}

TEST_F(Reset_device_test, suspended_is_9110)
{
    open_scanners(1);
    access::set_suspended(true);
    EXPECT_EQ(VyraBusReset_N(0), VYRA_SCN_UNAVAILABLE);
    EXPECT_THAT(take_log(), ElementsAre(error_line("reset_device", VYRA_SCN_UNAVAILABLE)));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Reset_device_test, not_initialized_leaves_the_detection_as_it_was)
{
    initialize();
    VyraTerminate();
    access::set_device_detected(true);
    EXPECT_EQ(VyraBusReset_N(0), VYRA_NOT_INITIALIZED);
    EXPECT_THAT(take_log(), ElementsAre(error_line("reset_device", VYRA_NOT_INITIALIZED)));
    EXPECT_TRUE(access::device_detected());
}

TEST_F(Reset_device_test, entry_without_a_device_is_9005_without_a_line)
{
    initialize();
    access::store_device(0, nullptr);
    EXPECT_EQ(VyraBusReset_N(0), VYRA_DEVICE_UNAVAIL);
}
