// Starting video.
#include <boost/chrono/duration.hpp>
#include <boost/chrono/system_clocks.hpp>
#include <boost/thread/thread.hpp>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t nothing_to_stop = 19;

class Capture_start_test : public Device_test {
protected:
    static std::vector<std::string> calls_of_start(int config, std::uint32_t stop_result = nothing_to_stop)
    {
        return {scanner_call("QXDR_StopCapture", "", stop_result),
                scanner_call("QXDR_SelectCaptureConfig", "config=" + std::to_string(config)),
                scanner_call("QXDR_StartCapture")};
    }
};

TEST_F(Capture_start_test, start_camera_stops_selects_configuration_1_and_starts)
{
    open_device();
    EXPECT_EQ(device().start_camera(), 0);
    EXPECT_EQ(take_calls(), calls_of_start(1));
    EXPECT_EQ(device().video_state(), video_running);
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 1);
}

TEST_F(Capture_start_test, start_video_gives_the_driver_the_low_byte_of_the_configuration)
{
    open_device();
    for (const std::uint16_t config :
         {std::uint16_t{13}, std::uint16_t{1}, std::uint16_t{0x010D}, std::uint16_t{0xFF01}}) {
        EXPECT_EQ(device().start_video(config), 0);
        EXPECT_EQ(take_calls(), calls_of_start(config & 0xFF)) << config;
        EXPECT_EQ(device().video_state(), video_running);
        ASSERT_EQ(device().stop_video(), 0);
        take_calls();
    }
}

TEST_F(Capture_start_test, a_configuration_that_the_scanner_does_not_have_is_9114)
{
    open_device();
    for (const auto& [result, translated] : driver_failures) {
        const std::int32_t status = result == driver_config_refused ? 9114 : translated;
        brenvozulta_sim_fail("QXDR_SelectCaptureConfig", result, 2);
        EXPECT_EQ(device().start_video(13), status) << result;
        EXPECT_EQ(device().start_camera(), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_SelectCaptureConfig", result),
                                            driver_error_line("QXDR_SelectCaptureConfig", result)));
        EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_StopCapture", "QXDR_SelectCaptureConfig", "QXDR_StopCapture",
                                                     "QXDR_SelectCaptureConfig"));
        EXPECT_EQ(device().video_state(), video_idle);
    }
}

TEST_F(Capture_start_test, a_refused_start_returns_the_translated_result_and_leaves_the_state)
{
    open_device();
    for (const auto& [result, status] : driver_failures) {
        brenvozulta_sim_fail("QXDR_StartCapture", result, 1);
        EXPECT_EQ(device().start_camera(), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_StartCapture", result)));
        EXPECT_EQ(device().video_state(), video_idle);
    }
}

TEST_F(Capture_start_test, a_refused_start_leaves_each_state_as_it_was)
{
    running_device();
    brenvozulta_sim_fail("QXDR_SelectCaptureConfig", driver_config_refused, 1);
    EXPECT_EQ(device().start_video(13), 9114);
    EXPECT_EQ(device().video_state(), video_running);
    brenvozulta_sim_fail("QXDR_StartCapture", driver_timeout, 1);
    EXPECT_EQ(device().start_camera(), 9016);
    EXPECT_EQ(device().video_state(), video_running);
    EXPECT_EQ(device().stop_video(), 9111) << "the driver has stopped already; the first start's thread has answered";
    EXPECT_EQ(device().video_state(), video_stopped);
    brenvozulta_sim_fail("QXDR_StartCapture", driver_timeout, 1);
    EXPECT_EQ(device().start_camera(), 9016);
    EXPECT_EQ(device().video_state(), video_stopped);
    device().request_stop();
    brenvozulta_sim_fail("QXDR_StartCapture", driver_timeout, 1);
    EXPECT_EQ(device().start_camera(), 9016);
    EXPECT_EQ(device().video_state(), video_stop_requested);
    EXPECT_THAT(take_log(),
                ElementsAre(driver_error_line("QXDR_SelectCaptureConfig", 6), driver_error_line("QXDR_StartCapture", 9),
                            driver_error_line("QXDR_StopCapture", 19), driver_error_line("QXDR_StartCapture", 9),
                            driver_error_line("QXDR_StartCapture", 9)));
}

TEST_F(Capture_start_test, the_video_runs_only_when_the_driver_has_started)
{
    open_device();
    ASSERT_EQ(brenvozulta_sim_block("QXDR_StartCapture"), 1);
    boost::thread starting([this] { EXPECT_EQ(device().start_camera(), 0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_StartCapture", 1, patience_ms), 1);
    EXPECT_EQ(device().video_state(), video_idle);
    brenvozulta_sim_unblock("QXDR_StartCapture");
    starting.join();
    EXPECT_EQ(device().video_state(), video_running);
}

TEST_F(Capture_start_test, requests_are_dropped_before_the_driver_is_asked_for_anything)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    brenvozulta_sim_fail("QXDR_StopCapture", driver_timeout, 1);
    brenvozulta_sim_fail("QXDR_SelectCaptureConfig", driver_config_refused, 1);
    ASSERT_EQ(device().start_camera(), 9114);
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_SelectCaptureConfig", 6)));
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);  // passes by the signal of the dropped request
    EXPECT_EQ(buffer, image_of(0));
}

// A pause is where a thread that is to be interrupted ends.
TEST_F(Capture_start_test, a_start_that_stopped_a_capture_pauses)
{
    open_device();
    brenvozulta_sim_set_idle_stop_result(driver_ok);
    ASSERT_EQ(brenvozulta_sim_block("QXDR_StopCapture"), 1);
    boost::thread starting([this] {
        device().start_camera();
        FAIL() << "no pause";
    });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_StopCapture", 1, patience_ms), 1);
    starting.interrupt();
    brenvozulta_sim_unblock("QXDR_StopCapture");
    starting.join();
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_StopCapture"));
}

TEST_F(Capture_start_test, a_start_that_had_nothing_to_stop_does_not_pause)
{
    open_device();
    ASSERT_EQ(brenvozulta_sim_block("QXDR_StopCapture"), 1);
    boost::thread starting([this] { EXPECT_EQ(device().start_camera(), 0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_StopCapture", 1, patience_ms), 1);
    starting.interrupt();
    brenvozulta_sim_unblock("QXDR_StopCapture");
    starting.join();
    EXPECT_EQ(take_calls(), calls_of_start(1));
}

TEST_F(Capture_start_test, the_pause_is_not_shorter_than_the_scanner_needs)
{
    open_device();
    brenvozulta_sim_set_idle_stop_result(driver_ok);
    const auto before = boost::chrono::steady_clock::now();
    ASSERT_EQ(device().start_camera(), 0);
    EXPECT_GE(boost::chrono::steady_clock::now() - before, boost::chrono::milliseconds(195));
    EXPECT_EQ(take_calls(), calls_of_start(1, 0));
}

TEST_F(Capture_start_test, a_second_start_succeeds_and_drops_the_requests_of_the_first)
{
    running_device();
    auto first = image_of(0);
    auto second = image_of(0);
    ASSERT_EQ(device().submit_video_request(first.data(), 1), 0);

    EXPECT_EQ(device().start_camera(), 0);
    EXPECT_EQ(take_calls(), calls_of_start(1, 0));
    EXPECT_EQ(device().video_state(), video_running);

    ASSERT_EQ(device().submit_video_request(second.data(), 2), 0);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(first, image_of(0));
    EXPECT_EQ(second, image_of(9));
}

TEST_F(Capture_start_test, video_can_be_started_and_stopped_again_and_again)
{
    open_device();
    auto buffer = image_of(0);
    for (std::uint8_t round = 1; round <= 5; ++round) {
        ASSERT_EQ(device().start_camera(), 0);
        ASSERT_EQ(device().submit_video_request(buffer.data(), round), 0);
        ASSERT_EQ(deliver(image_of(round), image_width, image_height), 0);
        ASSERT_EQ(buffer, image_of(round));
        ASSERT_EQ(device().stop_video(), 0);
    }
}

}  // namespace
