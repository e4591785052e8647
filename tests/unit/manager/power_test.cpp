// Sleep and resume.
#include "device_operations.h"

#include "manager/manager.h"

using namespace manager_tests;
using kvs::brenvozulta::power_handler;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const std::string sleep_line = "SET Vyrabrenvozulta IN HIBERNATE MODE\n";
const std::string resume_line = "SET Vyrabrenvozulta IN RESUME MODE\n";

constexpr std::uint32_t stop_requested = 2;
constexpr std::uint32_t stopped = 3;

class Power_test : public Manager_test {
protected:
    void SetUp() override
    {
        Manager_test::SetUp();
        testing::internal::CaptureStdout();
    }
    void TearDown() override
    {
        if (capturing_) {
            EXPECT_EQ(printed(), "") << "on standard output";
        }
        Manager_test::TearDown();
    }
    // What was printed since the last call; the next one starts anew.
    std::string printed()
    {
        std::string text = testing::internal::GetCapturedStdout();
        capturing_ = false;
        text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
        return text;
    }

private:
    bool capturing_ = true;
};

}  // namespace

TEST_F(Power_test, sleep_suspends_logs_and_prints)
{
    initialize();
    power_handler(SysPowerSleep);
    EXPECT_TRUE(access::suspended());
    EXPECT_THAT(take_log(), ElementsAre(sleep_line));
    EXPECT_EQ(printed(), "RQ7-3050 sleep\n");
}

TEST_F(Power_test, resume_wakes_logs_and_prints)
{
    initialize();
    access::set_suspended(true);
    power_handler(SysPowerResume);
    EXPECT_FALSE(access::suspended());
    EXPECT_THAT(take_log(), ElementsAre(resume_line));
    EXPECT_EQ(printed(), "RQ7-3050 resume\n");
}

TEST_F(Power_test, any_value_but_0_is_resume)
{
    initialize();
    access::set_suspended(true);
    power_handler(static_cast<SysPowerEventType>(2));
    EXPECT_FALSE(access::suspended());
    EXPECT_THAT(take_log(), ElementsAre(resume_line));
    EXPECT_EQ(printed(), "RQ7-3050 resume\n");
}

// The manager is told before the line is printed: who reads it finds the library suspended.
TEST_F(Power_test, events_before_initialize_and_after_terminate_change_nothing)
{
    initialize();
    VyraTerminate();
    power_handler(SysPowerSleep);
    EXPECT_FALSE(access::suspended());
    access::set_suspended(true);
    power_handler(SysPowerResume);
    EXPECT_TRUE(access::suspended());
    const auto line = error_line("ManagePowerEvent", VYRA_NOT_INITIALIZED);
    EXPECT_THAT(take_log(), ElementsAre(sleep_line, line, resume_line, line));
    EXPECT_EQ(printed(), "RQ7-3050 sleep\nRQ7-3050 resume\n");
}

TEST_F(Power_test, sleep_requests_a_stop_of_every_open_scanner_and_raises_a_status_change)
{
    open_scanners(3);
    access::store_device(7, nullptr);
    access::manager().ManagePowerEvent(true);
    for (const std::uint32_t handle : {0U, 1U, 2U}) {
        EXPECT_EQ(access::device(handle).video_state(), stop_requested);
    }
    access::manager().ManagePowerEvent(false);
    EXPECT_EQ(VyraGetStatus(0), VYRA_OK);
    EXPECT_THAT(take_driver_calls(), IsEmpty()) << "the driver is left alone";
}

TEST_F(Power_test, resume_restarts_nothing)
{
    open_scanners(1);
    brenvozulta_sim_set_idle_stop_result(driver_wrong_state);
    ASSERT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
    brenvozulta_sim_clear_calls();
    access::manager().ManagePowerEvent(true);
    EXPECT_TRUE(becomes_true([] { return access::device(0).video_state() == stopped; })) << "the video winds down";
    access::manager().ManagePowerEvent(false);
    EXPECT_EQ(access::device(0).video_state(), stopped);
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_EQ(VyraSubmitVideoRequest(0, this, 0), VYRA_VIDEO_STOPPED);
    EXPECT_THAT(take_log(), ElementsAre(error_line("submit_video_request", VYRA_VIDEO_STOPPED)));
    EXPECT_EQ(VyraStopVideo(0), VYRA_OK) << "without a wait for anybody";
    EXPECT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
    EXPECT_EQ(VyraStopVideo(0), VYRA_OK);
}

TEST_F(Power_test, every_device_operation_between_sleep_and_resume_is_9110)
{
    open_scanners(1);
    access::manager().ManagePowerEvent(true);
    for (const auto& operation : device_operations()) {
        SCOPED_TRACE(operation.export_name);
        EXPECT_EQ(operation.call(0), VYRA_SCN_UNAVAILABLE);
        EXPECT_THAT(take_log(), ElementsAre(error_line(operation.log_prefix, VYRA_SCN_UNAVAILABLE)));
    }
    std::uint32_t handle = 0;
    DeviceInfo info = {};
    EXPECT_EQ(VyraOpenDevice(scanner_2, &handle), VYRA_SCN_UNAVAILABLE);
    EXPECT_EQ(VyraBusReset_N(0), VYRA_SCN_UNAVAILABLE);
    EXPECT_EQ(VyraGetStatus(0), VYRA_SCN_UNAVAILABLE);
    EXPECT_EQ(VyraBrenvoMGGetDeviceInfo(scanner_1, nullptr, &info), VYRA_SCN_UNAVAILABLE);
    EXPECT_THAT(take_log(), ElementsAre(error_line("open_device", 9110), error_line("reset_device", 9110),
                                        error_line("get_status", 9110), error_line("get_device_info_dev_name", 9110)));
    access::manager().ManagePowerEvent(false);
    EXPECT_EQ(VyraBrenvoZultaSetParameters(0, 1, 2), VYRA_OK);
}

TEST_F(Power_test, suspended_survives_terminate_and_initialize_until_the_resume)
{
    initialize();
    access::manager().ManagePowerEvent(true);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_TRUE(access::suspended());
    initialize();
    EXPECT_TRUE(access::suspended());
    std::uint32_t handle = 0;
    EXPECT_EQ(VyraOpenDevice(scanner_1, &handle), VYRA_SCN_UNAVAILABLE);
    EXPECT_THAT(take_log(), ElementsAre(error_line("open_device", 9110)));
    access::manager().ManagePowerEvent(false);
    EXPECT_EQ(open(), 0U);
}

TEST_F(Power_test, broadcasts_of_the_system_reach_the_manager)
{
    open_scanners(1);
    ASSERT_NE(wait_for_window(), nullptr);
    send_power_event(PBT_APMSUSPEND);
    EXPECT_TRUE(access::suspended());
    EXPECT_EQ(access::device(0).video_state(), stop_requested);
    send_power_event(PBT_APMRESUMESUSPEND);
    EXPECT_FALSE(access::suspended());
    EXPECT_THAT(take_log(), ElementsAre(sleep_line, resume_line));
    EXPECT_EQ(printed(), "RQ7-3050 sleep\nRQ7-3050 resume\n");
}

TEST_F(Power_test, a_wake_nobody_attends_to_is_no_resume)
{
    initialize();
    ASSERT_NE(wait_for_window(), nullptr);
    send_power_event(PBT_APMSUSPEND);
    send_power_event(PBT_APMRESUMEAUTOMATIC);
    EXPECT_TRUE(access::suspended());
    send_power_event(PBT_APMRESUMESUSPEND);
    EXPECT_FALSE(access::suspended());
    EXPECT_THAT(take_log(), ElementsAre(sleep_line, resume_line));
    EXPECT_EQ(printed(), "RQ7-3050 sleep\nRQ7-3050 resume\n");
}

// A failed release leaves the events in place.
TEST_F(Power_test, broadcasts_still_reach_a_manager_whose_driver_was_not_released)
{
    initialize();
    ASSERT_NE(wait_for_window(), nullptr);
    brenvozulta_sim_fail("QXDR_Release", driver_internal, 1);
    EXPECT_EQ(VyraTerminate(), VYRA_INTERNAL);
    EXPECT_THAT(take_log(), ElementsAre(error_line("terminate", 9000)));
    send_power_event(PBT_APMSUSPEND);
    EXPECT_TRUE(access::suspended());
    EXPECT_THAT(take_log(), ElementsAre(sleep_line));
    EXPECT_EQ(printed(), "RQ7-3050 sleep\n");
}
