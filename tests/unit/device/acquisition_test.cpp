// The acquisition callback: what becomes of an image in each state of the video and of the queue.
#include "device/acquisition.h"

#include <boost/thread/thread.hpp>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::Each;
using testing::ElementsAre;

class Acquisition_test : public Device_test {
protected:
    // An image without pixels: whoever looks at it crashes.
    static std::int32_t deliver_nothing()
    {
        brenvozulta_sim_image image = {nullptr, 0, 1608, 1000, nullptr, 0, nullptr};
        std::int32_t result = -1;
        EXPECT_EQ(brenvozulta_sim_deliver(&image, patience_ms, &result), 1) << "the callback did not return";
        return result;
    }

    // What the host gets now; null when nothing is ready.
    const std::uint8_t* fetch()
    {
        void* buffer = nullptr;
        if (device().get_video_result(&buffer, nullptr) == 9106) {
            EXPECT_THAT(take_log(), ElementsAre(error_line("get_video_result", 9106)));
        }
        return static_cast<std::uint8_t*>(buffer);
    }
};

TEST_F(Acquisition_test, in_idle_the_image_is_answered_with_0_and_not_looked_at)
{
    open_device();
    EXPECT_EQ(deliver_nothing(), 0);
    EXPECT_EQ(device().video_state(), video_idle);
}

TEST_F(Acquisition_test, while_a_stop_is_requested_the_image_is_answered_with_2_and_not_looked_at)
{
    open_device();
    device().request_stop();
    EXPECT_EQ(deliver_nothing(), 2);
    EXPECT_EQ(device().video_state(), video_stop_requested);
}

TEST_F(Acquisition_test, when_stopped_the_image_is_answered_with_3_and_not_looked_at)
{
    running_device();
    ASSERT_EQ(device().stop_video(), 0);
    EXPECT_EQ(deliver_nothing(), 3);
}

TEST_F(Acquisition_test, width_times_height_bytes_go_into_the_request_and_not_one_more)
{
    running_device();
    std::vector<std::uint8_t> pixels(321 * 123);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    }
    std::vector<std::uint8_t> buffer(pixels.size() + 16, 0xA5);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);

    EXPECT_EQ(deliver(pixels, 321, 123), 0);

    EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), buffer.begin()));
    EXPECT_THAT(std::vector<std::uint8_t>(buffer.end() - 16, buffer.end()), Each(0xA5));
    EXPECT_EQ(fetch(), buffer.data());
}

TEST_F(Acquisition_test, without_a_request_the_callback_waits_for_one_and_fills_it)
{
    running_device();
    const std::uint64_t delivery = deliver_waiting(image_of(9));
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    EXPECT_EQ(result_of(delivery), 0);
    EXPECT_EQ(buffer, image_of(9));
    EXPECT_EQ(fetch(), buffer.data());
}

TEST_F(Acquisition_test, with_requests_but_none_pending_the_image_is_dropped_without_waiting)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);

    EXPECT_EQ(deliver(image_of(2), image_width, image_height), 0);

    EXPECT_EQ(buffer, image_of(1));
    EXPECT_EQ(fetch(), buffer.data());
    EXPECT_EQ(fetch(), nullptr);
}

TEST_F(Acquisition_test, the_signal_of_a_request_that_was_filled_at_once_lets_one_later_image_pass)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);
    ASSERT_EQ(fetch(), buffer.data());

    EXPECT_EQ(deliver(image_of(2), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(1));
    const std::uint64_t delivery = deliver_waiting(image_of(3));
    ASSERT_EQ(device().stop_video(), 0);
    EXPECT_EQ(result_of(delivery), 0);
}

TEST_F(Acquisition_test, a_size_beyond_a_signed_number_or_of_no_pixels_is_no_image)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    const std::pair<std::uint16_t, std::uint16_t> sizes[] = {{65535, 65535}, {46341, 46341}, {32769, 65535},
                                                             {0, 65535},     {65535, 0},     {0, 0}};
    for (const auto& [width, height] : sizes) {
        EXPECT_EQ(deliver(image_of(9), width, height), 0) << width << " x " << height;
        ASSERT_EQ(fetch(), nullptr) << width << " x " << height;
    }
    EXPECT_EQ(buffer, image_of(0));
    EXPECT_EQ(deliver(image_of(1), image_width, image_height), 0);
    EXPECT_EQ(fetch(), buffer.data()) << "the request is no longer pending";
}

TEST_F(Acquisition_test, an_image_during_open_finds_an_idle_video_and_nothing_happens)
{
    ASSERT_EQ(brenvozulta_sim_block("QXDR_SetLeds"), 1);
    boost::thread opening([this] { EXPECT_EQ(device().open(first_scanner, 0), 0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_SetLeds", 1, patience_ms), 1);

    EXPECT_EQ(deliver_nothing(), 0);

    brenvozulta_sim_unblock("QXDR_SetLeds");
    opening.join();
    EXPECT_EQ(device().video_state(), video_idle);
    EXPECT_EQ(device().start_camera(), 0);
}

TEST_F(Acquisition_test, images_of_two_scanners_go_to_the_device_that_the_context_names)
{
    brenvozulta_sim_attach(second_scanner);
    running_device();
    brenvozulta_device other;
    ASSERT_EQ(other.open(second_scanner, 0), 0);
    ASSERT_EQ(other.start_camera(), 0);
    auto of_first = image_of(0);
    auto of_second = image_of(0);
    ASSERT_EQ(device().submit_video_request(of_first.data(), 1), 0);
    ASSERT_EQ(other.submit_video_request(of_second.data(), 2), 0);

    EXPECT_EQ(deliver(image_of(2), image_width, image_height), 0);
    EXPECT_EQ(of_second, image_of(2));
    EXPECT_EQ(of_first, image_of(0));
    EXPECT_EQ(deliver_to(&device(), image_of(1)), 0);
    EXPECT_EQ(of_first, image_of(1));
    EXPECT_EQ(other.stop_video(), 0);
}

TEST_F(Acquisition_test, an_image_for_a_device_that_is_gone_is_refused_with_3)
{
    running_device();
    void* const context = brenvozulta_sim_callback_context();
    drop_device();
    EXPECT_EQ(deliver_to(context, image_of(1)), 3);
    EXPECT_EQ(deliver_nothing(), 3);
}

TEST_F(Acquisition_test, an_image_with_a_context_that_never_was_a_device_is_refused_with_3)
{
    open_device();
    EXPECT_EQ(deliver_to(nullptr, image_of(1)), 3);
    EXPECT_EQ(deliver_to(this, image_of(1)), 3);
}

TEST_F(Acquisition_test, after_a_close_the_old_context_answers_with_the_state_of_its_video)
{
    open_device();
    ASSERT_EQ(device().close(), 0);
    EXPECT_EQ(deliver_nothing(), 0);

    drop_device();
    EXPECT_EQ(deliver_nothing(), 3);
}

TEST_F(Acquisition_test, after_a_refused_registration_the_device_is_not_held_to_be_video)
{
    const brenvozulta_sim_fault registered_but_refused = {driver_timeout, 0, 1, 1};
    brenvozulta_sim_set_fault("QXDR_SetCallbackAcquisition", &registered_but_refused);
    ASSERT_EQ(device().open(first_scanner, 0), 9016);
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_SetCallbackAcquisition", 9)));
    EXPECT_EQ(deliver_nothing(), 0);
    drop_device();
    EXPECT_EQ(deliver_nothing(), 3);
}

}  // namespace
