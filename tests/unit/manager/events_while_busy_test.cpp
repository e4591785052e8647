// Events that come while the library is busy with something else.
#include "manager_test.h"

#include "vyra/notify.h"

using namespace manager_tests;
using ::testing::AnyOf;
using ::testing::ElementsAre;

namespace {

constexpr std::uint32_t running = 1;
constexpr std::uint32_t stopped = 3;

class Events_while_busy_test : public Manager_test {
protected:
    void start_video()
    {
        open_scanners(1);
        brenvozulta_sim_set_idle_stop_result(driver_wrong_state);
        ASSERT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
    }
    // An image for which no request is queued: its callback waits.
    std::uint64_t park_the_callback()
    {
        const brenvozulta_sim_image image = {pixels_, sizeof pixels_, 4, 2, nullptr, 0, nullptr};
        const std::uint64_t ticket = brenvozulta_sim_deliver_async(&image);
        EXPECT_EQ(brenvozulta_sim_wait_callbacks_inside(1, patience_ms), 1);
        EXPECT_EQ(brenvozulta_sim_wait_delivery_done(ticket, 50, nullptr), 0) << "the callback does not return";
        return ticket;
    }
    // A new video whose first request ends the wait.
    void release_the_callback(std::uint64_t ticket)
    {
        ASSERT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
        unsigned char buffer[sizeof pixels_] = {};
        ASSERT_EQ(VyraSubmitVideoRequest(0, buffer, 0), VYRA_OK);
        std::int32_t result = -1;
        EXPECT_EQ(brenvozulta_sim_wait_delivery_done(ticket, patience_ms, &result), 1);
        // Refused with the state when the event came before the callback had looked at it.
        EXPECT_THAT(result, AnyOf(0, 2, 3));
        EXPECT_EQ(VyraStopVideo(0), VYRA_OK);
    }

private:
    const unsigned char pixels_[8] = {1, 2, 3, 4, 5, 6, 7, 8};
};

}  // namespace

TEST_F(Events_while_busy_test, unplug_while_video_runs_marks_the_scanner_and_leaves_the_video_to_the_host)
{
    start_video();
    unplug(scanner_1);
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_EQ(access::device(0).video_state(), running);
    EXPECT_EQ(VyraGetStatus(0), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(take_log(), joined({unplug_lines(), {error_line("get_status", 9005)}}));
    EXPECT_EQ(VyraStopVideo(0), VYRA_DEVICE_UNAVAIL);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_StopCapture ret = 4 \n"));
}

TEST_F(Events_while_busy_test, plug_while_video_runs_disturbs_nothing)
{
    start_video();
    plug(scanner_2);
    EXPECT_EQ(access::device(0).video_state(), running);
    EXPECT_EQ(VyraStopVideo(0), VYRA_OK);
    EXPECT_EQ(take_log(), plug_lines());
}

TEST_F(Events_while_busy_test, sleep_while_video_runs_stops_the_video_and_not_the_capture)
{
    start_video();
    access::manager().ManagePowerEvent(true);
    EXPECT_TRUE(becomes_true([] { return access::device(0).video_state() == stopped; }));
    EXPECT_EQ(brenvozulta_sim_is_capturing(scanner_1), 1);
    access::manager().ManagePowerEvent(false);
    EXPECT_EQ(VyraStopVideo(0), VYRA_OK);
    EXPECT_EQ(brenvozulta_sim_is_capturing(scanner_1), 0);
}

TEST_F(Events_while_busy_test, sleep_while_the_acquisition_callback_is_parked_does_not_wait_for_it)
{
    start_video();
    const auto ticket = park_the_callback();
    access::manager().ManagePowerEvent(true);
    EXPECT_TRUE(becomes_true([] { return access::device(0).video_state() == stopped; }));
    access::manager().ManagePowerEvent(false);
    EXPECT_EQ(VyraStopVideo(0), VYRA_OK);
    release_the_callback(ticket);
}

TEST_F(Events_while_busy_test, unplug_while_the_acquisition_callback_is_parked_does_not_wait_for_it)
{
    start_video();
    park_the_callback();
    unplug(scanner_1);
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_EQ(take_log(), unplug_lines());
    EXPECT_EQ(VyraStopVideo(0), VYRA_DEVICE_UNAVAIL) << "the stop wakes the callback";
    EXPECT_EQ(brenvozulta_sim_wait_callbacks_inside(0, patience_ms), 1);
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_StopCapture", 4)));
}

TEST_F(Events_while_busy_test, plug_while_the_acquisition_callback_is_parked_does_not_wait_for_it)
{
    start_video();
    park_the_callback();
    plug(scanner_2);
    EXPECT_EQ(VyraStopVideo(0), VYRA_OK);
    EXPECT_EQ(brenvozulta_sim_wait_callbacks_inside(0, patience_ms), 1);
    EXPECT_EQ(take_log(), plug_lines());
}

TEST_F(Events_while_busy_test, unplug_during_a_reset_is_dealt_with_once_the_reset_is_over)
{
    open_scanners(1);
    const brenvozulta_sim_restart never = {0, 0, 0};
    brenvozulta_sim_set_restart(&never);
    brenvozulta_sim_block("QXDR_ResetDevice");
    auto resetting = std::async(std::launch::async, [] { return VyraBusReset_N(0); });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_ResetDevice", 1, patience_ms), 1);
    brenvozulta_sim_send_event(2, brenvozulta_sim_handle(scanner_1));
    EXPECT_EQ(brenvozulta_sim_wait_listener_inside(1, patience_ms), 1);
    EXPECT_FALSE(access::device(0).disconnected());
    brenvozulta_sim_unblock("QXDR_ResetDevice");
    EXPECT_EQ(resetting.get(), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_EQ(take_log(), joined({unplug_lines(),
                                  {"reset_device:    device->reset is OK but no device detected after 2000 ms \n"}}));
}

// The reset is not interrupted; the sleep takes effect once it is over.
TEST_F(Events_while_busy_test, sleep_during_a_reset_waits_for_its_end)
{
    open_scanners(1);
    ASSERT_NE(wait_for_window(), nullptr);
    const brenvozulta_sim_restart quick = {0, 1, 0};
    brenvozulta_sim_set_restart(&quick);
    brenvozulta_sim_block("QXDR_ResetDevice");
    testing::internal::CaptureStdout();
    auto resetting = std::async(std::launch::async, [] { return VyraBusReset_N(0); });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_ResetDevice", 1, patience_ms), 1);
    auto falling_asleep = std::async(std::launch::async, [] { send_power_event(PBT_APMSUSPEND); });
    // Its line stands before the scanner's return writes one: the log would mix their pieces.
    ASSERT_TRUE(wait_for_message("SET Vyrabrenvozulta IN HIBERNATE MODE"));
    EXPECT_FALSE(access::suspended());
    brenvozulta_sim_unblock("QXDR_ResetDevice");
    EXPECT_EQ(resetting.get(), VYRA_OK);
    falling_asleep.get();
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(access::suspended());
    EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    VyraTerminate();
    EXPECT_EQ(take_log(), joined({{"SET Vyrabrenvozulta IN HIBERNATE MODE\n"}, plug_lines()}));
}

// Each waits for the other: the sleep for the manager, the end for the power subscribers. The sleep gives up first.
TEST_F(Events_while_busy_test, sleep_while_terminate_runs_is_dropped_and_both_end)
{
    initialize();
    ASSERT_NE(wait_for_window(), nullptr);
    brenvozulta_sim_block("QXDR_Release");
    testing::internal::CaptureStdout();
    auto terminating = std::async(std::launch::async, [] { return VyraTerminate(); });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_Release", 1, patience_ms), 1);
    auto falling_asleep = std::async(std::launch::async, [] { send_power_event(PBT_APMSUSPEND); });
    EXPECT_TRUE(wait_for_message("SET Vyrabrenvozulta IN HIBERNATE MODE")) << "the handler has been called";
    brenvozulta_sim_unblock("QXDR_Release");
    EXPECT_EQ(terminating.get(), VYRA_OK);
    falling_asleep.get();
    EXPECT_FALSE(access::suspended());
    EXPECT_EQ(find_window(), nullptr);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(take_log().back(), error_line("ManagePowerEvent lock", VYRA_INTERNAL));
}

TEST_F(Events_while_busy_test, plug_while_terminate_runs_comes_too_late)
{
    initialize(host_callback);
    brenvozulta_sim_block("QXDR_Release");
    auto terminating = std::async(std::launch::async, [] { return VyraTerminate(); });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_Release", 1, patience_ms), 1);
    ASSERT_EQ(brenvozulta_sim_plug(scanner_2), 1);
    EXPECT_EQ(brenvozulta_sim_wait_listener_inside(1, patience_ms), 1);
    brenvozulta_sim_unblock("QXDR_Release");
    EXPECT_EQ(terminating.get(), VYRA_OK);
    EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    EXPECT_THAT(take_host_events(), ::testing::IsEmpty());
    EXPECT_EQ(take_log().back(), error_line("ManagePlugEvent", VYRA_NOT_INITIALIZED));
}

// A subscriber that takes its time holds the end up; the library counts as initialized until then.
TEST_F(Events_while_busy_test, terminate_waits_for_a_subscriber_and_is_initialized_until_then)
{
    initialize();
    ASSERT_NE(wait_for_window(), nullptr);
    Busy_usb_subscriber subscriber;
    auto terminating = std::async(std::launch::async, [] { return VyraTerminate(); });
    EXPECT_EQ(brenvozulta_sim_wait_returned("QXDR_Release", 1, patience_ms), 1);
    EXPECT_NE(terminating.wait_for(std::chrono::milliseconds(50)), std::future_status::ready);
    EXPECT_TRUE(access::initialized());
    subscriber.release();
    EXPECT_EQ(terminating.get(), VYRA_OK);
    EXPECT_FALSE(access::initialized());
}

// A thread cannot wait for itself: the notifier thread's own call fails, and does not hang.
TEST_F(Events_while_busy_test, terminate_from_a_subscriber_is_9000_and_the_next_initialize_recovers)
{
    static std::int32_t status;
    status = -1;
    initialize();
    ASSERT_NE(wait_for_window(), nullptr);
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) { status = VyraTerminate(); }));
    send_device_change(DBT_DEVICEARRIVAL, "USB#VID_0001&PID_0002#1");
    EXPECT_EQ(status, VYRA_INTERNAL);
    EXPECT_THAT(take_log(), ElementsAre(::testing::StartsWith("Exception : ")));
    ASSERT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_OK);
    EXPECT_NE(wait_for_window(), nullptr);
    EXPECT_EQ(open(), 0U);
    EXPECT_THAT(take_log(), ElementsAre("initialize:    clear current initialized api before the initialize\r\n",
                                        error_line("terminate", 9000)));
}
