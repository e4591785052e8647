// Stopping video, from each state.
#include <boost/thread/thread.hpp>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;

class Capture_stop_test : public Device_test {};

TEST_F(Capture_stop_test, in_idle_the_driver_is_asked_and_the_video_is_stopped)
{
    open_device();
    brenvozulta_sim_set_idle_stop_result(driver_ok);
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_StopCapture")));
    EXPECT_EQ(device().video_state(), video_stopped);
}

TEST_F(Capture_stop_test, a_running_video_is_stopped)
{
    running_device();
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_StopCapture")));
    EXPECT_EQ(device().video_state(), video_stopped);
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 0);
}

TEST_F(Capture_stop_test, a_stopped_video_is_stopped_again)
{
    running_device();
    ASSERT_EQ(device().stop_video(), 0);
    brenvozulta_sim_set_idle_stop_result(driver_ok);
    take_calls();
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_StopCapture")));
    EXPECT_EQ(device().video_state(), video_stopped);
}

// No extraction thread is there to answer: a stop that waited would never return.
TEST_F(Capture_stop_test, after_a_suspend_the_stop_does_not_wait)
{
    open_device();
    brenvozulta_sim_set_idle_stop_result(driver_ok);
    device().request_stop();
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_StopCapture")));
    EXPECT_EQ(device().video_state(), video_stopped);
}

TEST_F(Capture_stop_test, a_suspend_of_a_running_video_ends_its_extraction_thread)
{
    running_device();
    device().request_stop();
    EXPECT_TRUE(becomes_true([this] { return device().video_state() == video_stopped; }));
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 1);
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 0);
    EXPECT_EQ(device().start_camera(), 0);
    EXPECT_EQ(device().stop_video(), 0);
}

TEST_F(Capture_stop_test, the_handshake_comes_before_the_driver_is_asked)
{
    running_device();
    ASSERT_EQ(brenvozulta_sim_block("QXDR_StopCapture"), 1);
    boost::thread stopping([this] { EXPECT_EQ(device().stop_video(), 0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_StopCapture", 1, patience_ms), 1);
    EXPECT_EQ(device().video_state(), video_stopped);
    brenvozulta_sim_unblock("QXDR_StopCapture");
    stopping.join();
}

TEST_F(Capture_stop_test, a_callback_that_waits_for_a_request_is_woken_and_its_image_is_dropped)
{
    running_device();
    const std::uint64_t delivery = deliver_waiting(image_of(9));
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(result_of(delivery), 0);
    EXPECT_EQ(device().video_state(), video_stopped);
}

TEST_F(Capture_stop_test, the_callback_is_woken_before_the_driver_is_asked)
{
    running_device();
    const std::uint64_t delivery = deliver_waiting(image_of(9));
    ASSERT_EQ(brenvozulta_sim_block("QXDR_StopCapture"), 1);
    boost::thread stopping([this] { EXPECT_EQ(device().stop_video(), 0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_StopCapture", 1, patience_ms), 1);
    EXPECT_EQ(result_of(delivery), 0);
    brenvozulta_sim_unblock("QXDR_StopCapture");
    stopping.join();
}

TEST_F(Capture_stop_test, a_refused_stop_of_a_running_video_leaves_it_stopped_in_the_library_alone)
{
    for (const auto& [result, status] : driver_failures) {
        running_device();
        brenvozulta_sim_fail("QXDR_StopCapture", result, 1);
        EXPECT_EQ(device().stop_video(), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_StopCapture", result)));
        EXPECT_EQ(device().video_state(), video_stopped);
        EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 1);
        EXPECT_EQ(device().stop_video(), 0);
    }
}

TEST_F(Capture_stop_test, a_refused_stop_leaves_the_states_without_a_capture_as_they_were)
{
    open_device();
    EXPECT_EQ(device().stop_video(), 9111);
    EXPECT_EQ(device().video_state(), video_idle);
    device().request_stop();
    EXPECT_EQ(device().stop_video(), 9111);
    EXPECT_EQ(device().video_state(), video_stop_requested);
    EXPECT_THAT(take_log(),
                ElementsAre(driver_error_line("QXDR_StopCapture", 19), driver_error_line("QXDR_StopCapture", 19)));
}

TEST_F(Capture_stop_test, after_a_stop_no_buffer_is_written_any_more)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 3);
    EXPECT_EQ(buffer, image_of(0));
}

}  // namespace
