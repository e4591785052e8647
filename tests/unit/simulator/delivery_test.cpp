// Images delivered at will.
#include "driver_stage.h"

namespace simulator_test {
namespace {

class Delivery_test : public Driver_test {
protected:
    const std::vector<std::uint8_t> pixels_{1, 2, 3, 4, 5, 6};
    const brenvozulta_sim_image image_ = small_image(pixels_, 3);
};

TEST_F(Delivery_test, without_a_callback_nothing_is_delivered)
{
    initialize();
    EXPECT_FALSE(brenvozulta_sim_deliver(&image_, patience_ms, nullptr));
    EXPECT_EQ(brenvozulta_sim_deliver_async(&image_), 0U);
    EXPECT_FALSE(brenvozulta_sim_deliver(nullptr, 0, nullptr));
}

TEST_F(Delivery_test, the_callback_gets_the_image_and_its_result_comes_back)
{
    initialize();
    int context = 0;
    start_capture();
    ASSERT_EQ(QXDR_SetCallbackAcquisition(Host::callback, &context), 0U);
    EXPECT_EQ(brenvozulta_sim_callback_context(), &context);
    std::int32_t result = 0;
    ASSERT_TRUE(brenvozulta_sim_deliver(&image_, patience_ms, &result));
    EXPECT_EQ(result, 1);
    ASSERT_TRUE(brenvozulta_sim_deliver(&image_, patience_ms, &result));
    EXPECT_EQ(result, 2);
    const Received_image received = Host::images().at(0);
    EXPECT_EQ(received.pixels, pixels_);
    EXPECT_EQ(received.width, 3);
    EXPECT_EQ(received.height, 2);
    EXPECT_EQ(received.context, &context);
}

TEST_F(Delivery_test, the_last_registration_wins)
{
    initialize();
    int first = 0;
    int second = 0;
    start_capture();
    ASSERT_EQ(QXDR_SetCallbackAcquisition(Host::callback, &first), 0U);
    ASSERT_EQ(QXDR_SetCallbackAcquisition(Host::callback, &second), 0U);
    ASSERT_TRUE(brenvozulta_sim_deliver(&image_, patience_ms, nullptr));
    EXPECT_EQ(Host::images().at(0).context, &second);
}

TEST_F(Delivery_test, an_old_context_can_be_given)
{
    initialize();
    start_capture();
    int old = 0;
    brenvozulta_sim_image image = image_;
    image.use_context = 1;
    image.context = &old;
    ASSERT_TRUE(brenvozulta_sim_deliver(&image, patience_ms, nullptr));
    EXPECT_EQ(Host::images().at(0).context, &old);
}

TEST_F(Delivery_test, null_pixels_and_lying_sizes_are_passed_on)
{
    initialize();
    start_capture();
    brenvozulta_sim_image image{};
    image.width = 65535;
    image.height = 65535;
    ASSERT_TRUE(brenvozulta_sim_deliver(&image, patience_ms, nullptr));
    const Received_image received = Host::images().at(0);
    EXPECT_EQ(received.width, 65535);
    EXPECT_EQ(received.height, 65535);
    EXPECT_TRUE(received.pixels.empty());
}

TEST_F(Delivery_test, while_nothing_captures_it_comes_on_a_thread_of_its_own)
{
    initialize();
    ASSERT_EQ(QXDR_SetCallbackAcquisition(Host::callback, nullptr), 0U);
    ASSERT_TRUE(brenvozulta_sim_deliver(&image_, patience_ms, nullptr));
    EXPECT_NE(Host::images().at(0).thread, brenvozulta_sim_thread_id());
    EXPECT_TRUE(brenvozulta_sim_wait_acquisition_threads(0, patience_ms));
}

TEST_F(Delivery_test, a_scanner_that_does_not_capture_cannot_be_named)
{
    initialize();
    open();
    ASSERT_EQ(QXDR_SetCallbackAcquisition(Host::callback, nullptr), 0U);
    brenvozulta_sim_image image = image_;
    image.scanner = scanner;
    EXPECT_FALSE(brenvozulta_sim_deliver(&image, patience_ms, nullptr));
    image.scanner = "nobody";
    EXPECT_FALSE(brenvozulta_sim_deliver(&image, patience_ms, nullptr));
    EXPECT_EQ(brenvozulta_sim_deliver_next(nullptr), 0U);
}

TEST_F(Delivery_test, a_parked_callback_is_seen_and_images_queue_behind_it)
{
    initialize();
    start_capture();
    Host::park();
    const std::uint64_t first = brenvozulta_sim_deliver_async(&image_);
    const std::uint64_t second = brenvozulta_sim_deliver_async(&image_);
    ASSERT_TRUE(brenvozulta_sim_wait_delivery_begun(first, patience_ms));
    ASSERT_TRUE(brenvozulta_sim_wait_callbacks_inside(1, patience_ms));
    EXPECT_FALSE(brenvozulta_sim_wait_delivery_begun(second, 0));
    EXPECT_FALSE(brenvozulta_sim_wait_delivery_done(first, 0, nullptr));
    Host::release();
    std::int32_t result = 0;
    EXPECT_TRUE(brenvozulta_sim_wait_delivery_done(second, patience_ms, &result));
    EXPECT_EQ(result, 2);
    EXPECT_TRUE(brenvozulta_sim_wait_callbacks_inside(0, patience_ms));
    EXPECT_EQ(brenvozulta_sim_callbacks_entered(), 2U);
}

TEST_F(Delivery_test, the_next_image_of_the_source_can_be_asked_for)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_set_capture_config(5, "small", 20, 10));
    start_capture(scanner, 5);
    const std::uint64_t ticket = brenvozulta_sim_deliver_next(scanner);
    ASSERT_TRUE(brenvozulta_sim_wait_delivery_done(ticket, patience_ms, nullptr));
    EXPECT_EQ(Host::images().at(0).width, 20);
    EXPECT_EQ(Host::images().at(0).height, 10);
}

TEST_F(Delivery_test, unknown_tickets_are_refused)
{
    EXPECT_FALSE(brenvozulta_sim_wait_delivery_begun(77, patience_ms));
    EXPECT_FALSE(brenvozulta_sim_wait_delivery_done(0, patience_ms, nullptr));
}

}  // namespace
}  // namespace simulator_test
