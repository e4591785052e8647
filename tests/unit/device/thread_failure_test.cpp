// A start of video whose extraction thread the operating system refuses.
#include <boost/thread/exceptions.hpp>
#include <future>

#include "support/log_lines.h"
#include "unit/device/device_test.h"
#include "unit/device/thread_refusal.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::StartsWith;

constexpr int the_driver_s_own = 1;  // the acquisition thread, which the start of the capture creates

class Thread_failure_test : public Device_test {
protected:
    std::int32_t start_without_thread(std::uint32_t handle)
    {
        refuse_thread_after(the_driver_s_own);
        const std::int32_t status = VyraBrenvoZultaStartCamera(handle);
        EXPECT_TRUE(thread_was_refused());
        return status;
    }
};

TEST_F(Thread_failure_test, leaves_the_device_as_an_exception)
{
    open_device();
    refuse_thread_after(the_driver_s_own);
    EXPECT_THROW(device().start_camera(), boost::thread_resource_error);
    EXPECT_TRUE(thread_was_refused());
    EXPECT_EQ(device().video_state(), video_running);
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 1);
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(device().video_state(), video_stopped);
}

TEST_F(Thread_failure_test, is_9000_for_the_host_and_the_capture_goes_on)
{
    const std::uint32_t handle = open();
    EXPECT_EQ(start_without_thread(handle), 9000);
    EXPECT_THAT(take_log(), ElementsAre(StartsWith("Exception : ")));

    auto buffer = image_of(0);
    EXPECT_EQ(VyraSubmitVideoRequest(handle, buffer.data(), 7), 0);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(9));
}

TEST_F(Thread_failure_test, a_later_stop_does_not_wait_and_a_later_start_works)
{
    const std::uint32_t handle = open();
    ASSERT_EQ(start_without_thread(handle), 9000);
    EXPECT_THAT(
        take_log(),
        ElementsAre("Exception : boost::thread_resource_error: Resource temporarily unavailable [generic:11]\r\n"));
    EXPECT_EQ(VyraStopVideo(handle), 0);
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 0);
    EXPECT_EQ(VyraBrenvoZultaStartCamera(handle), 0);
    EXPECT_EQ(VyraStopVideo(handle), 0);
}

TEST_F(Thread_failure_test, a_second_start_that_fails_so_does_not_hold_up_the_stop)
{
    const std::uint32_t handle = open();
    ASSERT_EQ(VyraBrenvoZultaStartCamera(handle), 0);
    ASSERT_EQ(start_without_thread(handle), 9000);
    EXPECT_THAT(
        take_log(),
        ElementsAre("Exception : boost::thread_resource_error: Resource temporarily unavailable [generic:11]\r\n"));
    // The stop is held before its last step, which would take the stop request from the thread of the first start.
    brenvozulta_sim_block("QXDR_StopCapture");
    auto stopping = std::async(std::launch::async, [&] { return VyraStopVideo(handle); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_StopCapture", 1, patience_ms), 1);
    // That thread finds the handshake fulfilled. Its line comes piece by piece.
    EXPECT_TRUE(becomes_true([] {
        const std::string log = file_bytes(log_path());
        return log.find("promise Exception") != std::string::npos && log.back() == '\n';
    }));
    EXPECT_THAT(take_log(), ElementsAre(StartsWith("#DV# Video_extraction:\t error promise Exception: ")));
    brenvozulta_sim_unblock("QXDR_StopCapture");
    EXPECT_EQ(stopping.get(), 0);
}

}  // namespace
