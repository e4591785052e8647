// Images that a driver may deliver and a kind one does not, and stops that wait for the callback.
#include <boost/thread/thread.hpp>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;

class Driver_liberties_test : public Device_test {
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

TEST_F(Driver_liberties_test, an_image_before_the_start_has_returned_is_not_looked_at)
{
    image_at(BRENVOZULTA_SIM_ON_RETURN, "QXDR_StartCapture");
    open_device();
    EXPECT_EQ(device().start_camera(), 0);
    EXPECT_EQ(brenvozulta_sim_callbacks_returned(), 1U);
    EXPECT_EQ(device().video_state(), video_running);

    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(9));
}

TEST_F(Driver_liberties_test, images_after_the_driver_has_stopped_are_not_looked_at)
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

TEST_F(Driver_liberties_test, images_during_and_after_a_close_are_not_looked_at)
{
    image_at(BRENVOZULTA_SIM_ON_RETURN, "QXDR_CloseDevice");
    image_at(BRENVOZULTA_SIM_AFTER_CALL, "QXDR_CloseDevice");
    running_device();
    ASSERT_EQ(device().stop_video(), 0);
    EXPECT_EQ(device().close(), 0);
    drop_device();
    expect_callbacks(2);
}

TEST_F(Driver_liberties_test, an_image_between_the_drivers_stop_and_its_return_is_answered_with_3)
{
    running_device();
    ASSERT_EQ(brenvozulta_sim_block_return("QXDR_StopCapture"), 1);
    boost::thread stopping([this] { EXPECT_EQ(device().stop_video(), 0); });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_StopCapture", 1, patience_ms), 1);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 3);
    ASSERT_EQ(brenvozulta_sim_unblock("QXDR_StopCapture"), 1);
    stopping.join();
}

TEST_F(Driver_liberties_test, an_image_of_another_size_than_the_configurations_fills_as_many_bytes_as_it_has)
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
TEST_F(Driver_liberties_test, a_stop_and_a_close_that_wait_for_the_callback_find_it_woken)
{
    running_device();
    brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
    const std::uint64_t delivery = deliver_waiting(image_of(9));
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(result_of(delivery), 0);
    EXPECT_EQ(brenvozulta_sim_callbacks_inside(), 0U);
    EXPECT_EQ(device().close(), 0);
}

TEST_F(Driver_liberties_test, a_sleep_lets_the_callback_go_that_the_next_start_or_stop_may_wait_for)
{
    for (const bool start : {true, false}) {
        running_device();
        brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
        const std::uint64_t delivery = deliver_waiting(image_of(9));
        device().request_stop();
        EXPECT_EQ(start ? device().start_camera() : device().stop_video(), 0);
        EXPECT_EQ(result_of(delivery), 0);
    }
}

// A scanner that still captures when another is opened delivers to that one.
TEST_F(Driver_liberties_test, a_stop_lets_every_callback_go_that_waits)
{
    brenvozulta_sim_attach("second");
    const std::uint32_t first = open(first_scanner);
    ASSERT_EQ(VyraBrenvoZultaStartCamera(first), VYRA_OK);
    const std::uint32_t second = open("second");
    ASSERT_EQ(VyraBrenvoZultaStartCamera(second), VYRA_OK);
    brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
    const auto pixels = image_of(9);
    std::vector<std::uint64_t> deliveries;
    for (const char* const scanner : {first_scanner, "second"}) {
        deliveries.push_back(deliver_waiting(pixels, scanner));
    }
    EXPECT_EQ(VyraStopVideo(second), VYRA_OK);
    for (const std::uint64_t delivery : deliveries) {
        EXPECT_EQ(result_of(delivery), 0);
    }
}

TEST_F(Driver_liberties_test, a_release_that_waits_for_the_callback_finds_it_woken_by_the_stop)
{
    const std::uint32_t handle = open(first_scanner);
    ASSERT_EQ(VyraBrenvoZultaStartCamera(handle), 0);
    brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
    deliver_waiting(image_of(9));
    EXPECT_EQ(VyraStopVideo(handle), 0);
    EXPECT_EQ(VyraTerminate(), 0);
    EXPECT_EQ(brenvozulta_sim_callbacks_inside(), 0U);
}

}  // namespace
