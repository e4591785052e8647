// Stopping video, from each state.
#include <boost/thread/thread.hpp>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;

class Capture_stop : public Device_test {};

TEST_F(Capture_stop, In_Idle_The_Driver_Is_Asked_And_The_Video_Is_Stopped)
{
    open_device();
    brenvozulta_sim_set_idle_stop_result(0);
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_StopCapture")));
    EXPECT_EQ(device().video_state(), video_stopped);
}

TEST_F(Capture_stop, A_Running_Video_Is_Stopped)
{
    running_device();
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_StopCapture")));
    EXPECT_EQ(device().video_state(), video_stopped);
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 0);
}

TEST_F(Capture_stop, A_Stopped_Video_Is_Stopped_Again)
{
    running_device();
    ASSERT_EQ(device().stop_video(), 0);
    brenvozulta_sim_set_idle_stop_result(0);
    take_calls();
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_StopCapture")));
    EXPECT_EQ(device().video_state(), video_stopped);
}

// No extraction thread is there to answer: a stop that waited would never return.
TEST_F(Capture_stop, After_A_Suspend_The_Stop_Does_Not_Wait)
{
    open_device();
    brenvozulta_sim_set_idle_stop_result(0);
    device().request_stop();
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_StopCapture")));
    EXPECT_EQ(device().video_state(), video_stopped);
}

TEST_F(Capture_stop, A_Suspend_Of_A_Running_Video_Ends_Its_Extraction_Thread)
{
    running_device();
    device().request_stop();
    EXPECT_TRUE(eventually([this] { return device().video_state() == video_stopped; }));
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 1);
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 0);
    EXPECT_EQ(device().start_camera(), 0);
    EXPECT_EQ(device().stop_video(), 0);
}

TEST_F(Capture_stop, The_Handshake_Comes_Before_The_Driver_Is_Asked)
{
    running_device();
    ASSERT_EQ(brenvozulta_sim_block("QXDR_StopCapture"), 1);
    boost::thread stopping([this] { EXPECT_EQ(device().stop_video(), 0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_StopCapture", 1, patience_ms), 1);
    EXPECT_EQ(device().video_state(), video_stopped);
    brenvozulta_sim_unblock("QXDR_StopCapture");
    stopping.join();
}

TEST_F(Capture_stop, A_Callback_That_Waits_For_A_Request_Is_Woken_And_Its_Image_Is_Dropped)
{
    running_device();
    const std::uint64_t delivery = deliver_waiting(image_of(9));
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(result_of(delivery), 0);
    EXPECT_EQ(device().video_state(), video_stopped);
}

TEST_F(Capture_stop, The_Callback_Is_Woken_Before_The_Driver_Is_Asked)
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

TEST_F(Capture_stop, A_Refused_Stop_Of_A_Running_Video_Leaves_It_Stopped_In_The_Library_Alone)
{
    for (const auto& [result, status] : translations()) {
        running_device();
        brenvozulta_sim_fail("QXDR_StopCapture", result, 1);
        EXPECT_EQ(device().stop_video(), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_StopCapture", result)));
        EXPECT_EQ(device().video_state(), video_stopped);
        EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 1);
        EXPECT_EQ(device().stop_video(), 0);
    }
}

TEST_F(Capture_stop, A_Refused_Stop_Leaves_The_States_Without_A_Capture_As_They_Were)
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

TEST_F(Capture_stop, After_A_Stop_No_Buffer_Is_Written_Any_More)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 3);
    EXPECT_EQ(buffer, image_of(0));
}

}  // namespace
