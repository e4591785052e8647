// Images that a driver may deliver and a kind one does not, and stops that wait for the callback.
#include <boost/thread/thread.hpp>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;

class Driver_liberties : public Device_test {
protected:
    // One image, without pixels, when the driver's call number count of the function comes to the moment: whoever looks
    // at it crashes.
    static void image_at(std::int32_t moment, const char* function, std::uint64_t count = 1)
    {
        const brenvozulta_sim_image image = {nullptr, 0, 1608, 1000, nullptr, 0, nullptr};
        brenvozulta_sim_happening happening = {};
        happening.moment = moment;
        happening.function = function;
        happening.count = count;
        happening.what = BRENVOZULTA_SIM_IMAGE;
        happening.image = &image;
        ASSERT_EQ(brenvozulta_sim_add_happening(&happening), 1);
    }

    static void expect_callbacks(std::uint64_t count)
    {
        EXPECT_EQ(brenvozulta_sim_wait_callbacks_returned(count, patience_ms), 1);
    }
};

TEST_F(Driver_liberties, An_Image_Before_The_Start_Has_Returned_Is_Not_Looked_At)
{
    image_at(BRENVOZULTA_SIM_ON_RETURN, "QXDR_StartCapture");
    open_device();
    EXPECT_EQ(device().start_camera(), 0);
    EXPECT_EQ(brenvozulta_sim_callbacks_returned(), 1u);
    EXPECT_EQ(device().video_state(), video_running);

    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(9));
}

TEST_F(Driver_liberties, Images_After_The_Driver_Has_Stopped_Are_Not_Looked_At)
{
    running_device();  // stops first
    image_at(BRENVOZULTA_SIM_ON_RETURN, "QXDR_StopCapture", 2);
    image_at(BRENVOZULTA_SIM_AFTER_CALL, "QXDR_StopCapture", 2);
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    EXPECT_EQ(device().stop_video(), 0);
    expect_callbacks(2);
    EXPECT_EQ(buffer, image_of(0));
    EXPECT_EQ(device().video_state(), video_stopped);
}

TEST_F(Driver_liberties, Images_During_And_After_A_Close_Are_Not_Looked_At)
{
    image_at(BRENVOZULTA_SIM_ON_RETURN, "QXDR_CloseDevice");
    image_at(BRENVOZULTA_SIM_AFTER_CALL, "QXDR_CloseDevice");
    running_device();
    ASSERT_EQ(device().stop_video(), 0);
    EXPECT_EQ(device().close(), 0);
    drop_device();
    expect_callbacks(2);
}

TEST_F(Driver_liberties, An_Image_Between_The_Drivers_Stop_And_Its_Return_Is_Answered_With_3)
{
    running_device();
    ASSERT_EQ(brenvozulta_sim_block_return("QXDR_StopCapture"), 1);
    boost::thread stopping([this] { EXPECT_EQ(device().stop_video(), 0); });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_StopCapture", 1, patience_ms), 1);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 3);
    ASSERT_EQ(brenvozulta_sim_unblock("QXDR_StopCapture"), 1);
    stopping.join();
}

TEST_F(Driver_liberties, An_Image_Of_Another_Size_Than_The_Configurations_Fills_As_Many_Bytes_As_It_Has)
{
    running_device();
    std::vector<std::uint8_t> buffer(100, 0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    EXPECT_EQ(deliver({}, 0, 1500), 0) << "an empty one fills nothing";
    EXPECT_EQ(deliver({1, 2, 3}, 3, 1), 0);
    EXPECT_EQ(buffer[2], 3);
    EXPECT_EQ(buffer[3], 0);
}

// Whatever the driver waits for, the callback is on its way out when the driver is told to stop.
TEST_F(Driver_liberties, A_Stop_And_A_Close_That_Wait_For_The_Callback_Find_It_Woken)
{
    running_device();
    brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
    const std::uint64_t delivery = deliver_waiting(image_of(9));
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(result_of(delivery), 0);
    EXPECT_EQ(brenvozulta_sim_callbacks_inside(), 0u);
    EXPECT_EQ(device().close(), 0);
}

TEST_F(Driver_liberties, A_Release_That_Waits_For_The_Callback_Finds_It_Woken_By_The_Stop)
{
    const std::uint32_t handle = open(first_scanner);
    ASSERT_EQ(VyraBrenvoZultaStartCamera(handle), 0);
    brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
    deliver_waiting(image_of(9));
    EXPECT_EQ(VyraStopVideo(handle), 0);
    EXPECT_EQ(VyraTerminate(), 0);
    EXPECT_EQ(brenvozulta_sim_callbacks_inside(), 0u);
}

}  // namespace
