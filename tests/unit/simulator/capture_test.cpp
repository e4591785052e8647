// Captures and their acquisition threads.
#include <thread>

#include "driver_stage.h"

namespace simulator_test {
namespace {

class Capture_test : public Driver_test {};

TEST_F(Capture_test, a_capture_delivers_images_of_the_selected_configuration_on_a_thread_of_its_own)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_set_capture_config(5, "small", 31, 17));
    int context = 0;
    void* handle = start_capture(scanner, 5);
    ASSERT_EQ(QXDR_SetCallbackAcquisition(Host::callback, &context), 0U);
    ASSERT_TRUE(brenvozulta_sim_set_frame_rate(1000));
    ASSERT_TRUE(brenvozulta_sim_wait_callbacks_returned(3, patience_ms));
    EXPECT_EQ(QXDR_StopCapture(handle), 0U);
    const auto images = Host::images();
    ASSERT_GE(images.size(), 3U);
    for (const Received_image& image : images) {
        EXPECT_EQ(image.width, 31);
        EXPECT_EQ(image.height, 17);
        EXPECT_EQ(image.context, &context);
        EXPECT_EQ(image.thread, images[0].thread);
        EXPECT_NE(image.thread, brenvozulta_sim_thread_id());
    }
}

TEST_F(Capture_test, after_stop_no_callback_is_entered_and_the_thread_has_ended)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_set_capture_config(5, "small", 8, 8));
    void* handle = start_capture(scanner, 5);
    ASSERT_TRUE(brenvozulta_sim_set_frame_rate(1000));
    ASSERT_TRUE(brenvozulta_sim_wait_callbacks_entered(2, patience_ms));
    brenvozulta_sim_set_stop_patience(patience_ms);
    EXPECT_EQ(QXDR_StopCapture(handle), 0U);
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
    EXPECT_EQ(brenvozulta_sim_callbacks_entered(), brenvozulta_sim_callbacks_returned());
}

TEST_F(Capture_test, with_rate_0_nothing_comes_by_itself)
{
    initialize();
    start_capture();
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 1U);
    EXPECT_FALSE(brenvozulta_sim_wait_callbacks_entered(1, 20));
}

TEST_F(Capture_test, the_rate_has_bounds)
{
    EXPECT_FALSE(brenvozulta_sim_set_frame_rate(-1));
    EXPECT_FALSE(brenvozulta_sim_set_frame_rate(1000.5));
    EXPECT_FALSE(brenvozulta_sim_set_frame_rate(std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(Capture_test, stop_leaves_a_parked_callback_alone_and_a_new_capture_works)
{
    initialize();
    brenvozulta_sim_set_stop_patience(1);
    void* handle = start_capture();
    const std::vector<std::uint8_t> pixels(4, 9);
    const brenvozulta_sim_image image = small_image(pixels, 2);
    Host::park();
    const std::uint64_t parked = brenvozulta_sim_deliver_async(&image);
    ASSERT_TRUE(brenvozulta_sim_wait_delivery_begun(parked, patience_ms));
    EXPECT_EQ(QXDR_StopCapture(handle), 0U);
    EXPECT_EQ(brenvozulta_sim_callbacks_inside(), 1U);
    EXPECT_EQ(QXDR_StartCapture(handle), 0U);
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 2U);
    Host::release();
    EXPECT_TRUE(brenvozulta_sim_wait_delivery_done(parked, patience_ms, nullptr));
    EXPECT_TRUE(brenvozulta_sim_wait_acquisition_threads(1, patience_ms)) << "the old thread did not end";
    EXPECT_TRUE(brenvozulta_sim_deliver(&image, patience_ms, nullptr));
}

TEST_F(Capture_test, stop_waits_for_a_callback_that_is_about_to_return)
{
    initialize();
    brenvozulta_sim_set_stop_patience(patience_ms);
    void* handle = start_capture();
    const std::vector<std::uint8_t> pixels(1, 9);
    const brenvozulta_sim_image image = small_image(pixels, 1);
    Host::park();
    ASSERT_TRUE(brenvozulta_sim_wait_delivery_begun(brenvozulta_sim_deliver_async(&image), patience_ms));
    std::thread host([handle] {
        EXPECT_EQ(QXDR_StopCapture(handle), 0U);
        EXPECT_EQ(brenvozulta_sim_callbacks_returned(), 1U);
    });
    ASSERT_TRUE(brenvozulta_sim_wait_called("QXDR_StopCapture", 1, patience_ms));
    Host::release();
    host.join();
}

TEST_F(Capture_test, images_waiting_behind_a_parked_one_are_dropped_by_a_stop)
{
    initialize();
    brenvozulta_sim_set_stop_patience(1);
    void* handle = start_capture();
    const std::vector<std::uint8_t> pixels(1, 9);
    const brenvozulta_sim_image image = small_image(pixels, 1);
    Host::park();
    ASSERT_TRUE(brenvozulta_sim_wait_delivery_begun(brenvozulta_sim_deliver_async(&image), patience_ms));
    const std::uint64_t behind = brenvozulta_sim_deliver_async(&image);
    EXPECT_EQ(QXDR_StopCapture(handle), 0U);
    Host::release();
    EXPECT_FALSE(brenvozulta_sim_wait_delivery_done(behind, patience_ms, nullptr));
    EXPECT_EQ(Host::images().size(), 1U);
}

TEST_F(Capture_test, each_capturing_scanner_has_a_thread_and_all_share_one_callback)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    start_capture();
    start_capture("second");
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 2U);
    const std::vector<std::uint8_t> pixels(1, 9);
    brenvozulta_sim_image image = small_image(pixels, 1);
    image.scanner = scanner;
    ASSERT_TRUE(brenvozulta_sim_deliver(&image, patience_ms, nullptr));
    image.scanner = "second";
    ASSERT_TRUE(brenvozulta_sim_deliver(&image, patience_ms, nullptr));
    const auto images = Host::images();
    ASSERT_EQ(images.size(), 2U);
    EXPECT_NE(images[0].thread, images[1].thread);
}

TEST_F(Capture_test, states_and_configurations_are_checked)
{
    initialize();
    void* handle = open();
    EXPECT_EQ(QXDR_SelectCaptureConfig(handle, 2), 6U);
    EXPECT_EQ(QXDR_SelectCaptureConfig(handle, 13), 0U);
    EXPECT_EQ(brenvozulta_sim_selected_config(scanner), 13);
    EXPECT_EQ(QXDR_StartCapture(handle), 0U);
    EXPECT_EQ(QXDR_StartCapture(handle), 19U);
    EXPECT_EQ(QXDR_SelectCaptureConfig(handle, 1), 19U);
    EXPECT_EQ(QXDR_StopCapture(handle), 0U);
    EXPECT_EQ(QXDR_StopCapture(handle), 0U);
    brenvozulta_sim_set_idle_stop_result(19);
    EXPECT_EQ(QXDR_StopCapture(handle), 19U);
    ASSERT_TRUE(brenvozulta_sim_remove_capture_config(13));
    EXPECT_EQ(QXDR_StartCapture(handle), 6U);
}

TEST_F(Capture_test, close_ends_a_capture)
{
    initialize();
    void* handle = start_capture();
    EXPECT_EQ(QXDR_CloseDevice(&handle), 0U);
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
}

TEST_F(Capture_test, a_pulled_scanner_sends_nothing_more_and_its_calls_fail_with_4)
{
    initialize();
    void* handle = start_capture();
    ASSERT_TRUE(brenvozulta_sim_remove(scanner));
    EXPECT_TRUE(brenvozulta_sim_wait_acquisition_threads(0, patience_ms));
    DriverDeviceInfo info{};
    void* const pulled = handle;
    EXPECT_EQ(QXDR_StopCapture(handle), 4U);
    EXPECT_EQ(QXDR_StartCapture(handle), 4U);
    EXPECT_EQ(QXDR_SelectCaptureConfig(handle, 1), 4U);
    EXPECT_EQ(QXDR_GetDeviceInfo(handle, &info), 4U);
    EXPECT_EQ(QXDR_SetLeds(handle, 0, 0, 0, 0), 4U);
    EXPECT_EQ(QXDR_ResetDevice(handle), 4U);
    EXPECT_EQ(QXDR_CloseDevice(&handle), 4U);
    EXPECT_EQ(handle, pulled);
    EXPECT_EQ(QXDR_OpenDevice(scanner, &handle), 5U);
}

}  // namespace
}  // namespace simulator_test
