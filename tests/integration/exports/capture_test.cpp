// Images from the scanner to the host's buffers.
#include <array>
#include <numeric>
#include <vector>

#include "driver/driver.h"
#include "support/scanner_test.h"

namespace {

using test_support::error_line;
using test_support::patience_ms;
using ::testing::ElementsAre;

constexpr std::uint16_t width = 16;
constexpr std::uint16_t height = 12;
constexpr std::size_t image_size = std::size_t{width} * height;

using Pixels = std::vector<std::uint8_t>;

Pixels image_of(std::uint8_t start)
{
    Pixels pixels(image_size);
    std::iota(pixels.begin(), pixels.end(), start);
    return pixels;
}

brenvozulta_sim_image delivery_of(const Pixels& pixels)
{
    brenvozulta_sim_image image = {};
    image.pixels = pixels.data();
    image.length = pixels.size();
    image.width = width;
    image.height = height;
    return image;
}

class Capture_test : public test_support::Scanner_test {
protected:
    void SetUp() override
    {
        Scanner_test::SetUp();
        brenvozulta_sim_set_idle_stop_result(driver_scanner_gone);  // a start then makes no pause
    }

    void start(std::uint32_t mode = 1)
    {
        handle_ = open();
        ASSERT_EQ(VyraBrenvoStartVideo(handle_, mode, 0), VYRA_OK);
    }

    static void deliver(const Pixels& pixels)
    {
        const auto image = delivery_of(pixels);
        std::int32_t result = -1;
        ASSERT_EQ(brenvozulta_sim_deliver(&image, patience_ms, &result), 1);
        ASSERT_EQ(result, 0);
    }

    void expect_result(void* buffer, std::uint64_t context) const
    {
        void* filled = nullptr;
        std::uint64_t value = 0;
        EXPECT_EQ(VyraGetVideoResult(handle_, &filled, &value), VYRA_OK);
        EXPECT_EQ(filled, buffer);
        EXPECT_EQ(value, context);
    }

    void stop_and_close() const
    {
        EXPECT_EQ(VyraStopVideo(handle_), VYRA_OK);
        EXPECT_EQ(VyraCloseDevice_N(handle_), VYRA_OK);
    }

    std::uint32_t handle_ = VYRA_NO_HANDLE;
};

TEST_F(Capture_test, image_travels_from_the_scanner_to_the_hosts_buffer)
{
    initialize();
    start();
    Pixels buffer(image_size);
    ASSERT_EQ(VyraSubmitVideoRequest(handle_, buffer.data(), 0xFEDCBA9876543210), VYRA_OK);
    deliver(image_of(5));
    expect_result(buffer.data(), 0xFEDCBA9876543210);
    EXPECT_EQ(buffer, image_of(5));
    stop_and_close();
}

TEST_F(Capture_test, modes_select_their_configuration_in_the_driver)
{
    initialize();
    handle_ = open();
    for (std::uint32_t mode = 0; mode <= 18; ++mode) {
        const bool roll = VYRA_MODE_IS_ROLL(mode);
        const bool known = roll || VYRA_MODE_IS_FLAT(mode);
        EXPECT_EQ(known, mode != 3);
        EXPECT_EQ(VyraBrenvoStartVideo(handle_, mode, mode), known ? VYRA_OK : VYRA_BAD_PARAMETER) << mode;
        if (known) {
            EXPECT_EQ(roll, mode == VYRA_MODE_ROLL || mode >= 9);
            EXPECT_EQ(brenvozulta_sim_selected_config(BRENVOZULTA_SIM_DEFAULT_SCANNER), roll ? 13 : 1) << mode;
            EXPECT_EQ(VyraStopVideo(handle_), VYRA_OK);
        }
    }
    EXPECT_EQ(VyraBrenvoStartVideo(handle_, 19, 0), VYRA_BAD_PARAMETER);
    EXPECT_EQ(VyraBrenvoStartVideo(handle_, 0xFFFFFFFF, 0), VYRA_BAD_PARAMETER);
    EXPECT_EQ(VyraBrenvoZultaStartCamera(handle_), VYRA_OK);
    EXPECT_EQ(brenvozulta_sim_selected_config(BRENVOZULTA_SIM_DEFAULT_SCANNER), 1);
    stop_and_close();
}

TEST_F(Capture_test, eight_requests_are_taken_filled_in_order_and_the_ninth_is_refused)
{
    initialize();
    start();
    std::array<Pixels, 9> buffers;
    buffers.fill(Pixels(image_size));
    for (std::uint64_t number = 0; number < 8; ++number) {
        EXPECT_EQ(VyraSubmitVideoRequest(handle_, buffers[number].data(), number), VYRA_OK);
    }
    EXPECT_EQ(VyraSubmitVideoRequest(handle_, buffers[8].data(), 8), VYRA_TOO_MANY_FRAMES);
    EXPECT_THAT(take_log(), ElementsAre("submit_video_request:    Add frame queue Error=9104\r\n"));
    for (std::uint8_t number = 0; number < 8; ++number) {
        deliver(image_of(number));
    }
    EXPECT_EQ(VyraSubmitVideoRequest(handle_, buffers[8].data(), 8), VYRA_TOO_MANY_FRAMES)
        << "a filled request counts until it is fetched";
    for (std::uint8_t number = 0; number < 8; ++number) {
        expect_result(buffers[number].data(), number);
        EXPECT_EQ(buffers[number], image_of(number));
    }
    EXPECT_EQ(buffers[8], Pixels(image_size));
    EXPECT_THAT(take_log(), ElementsAre("submit_video_request:    Add frame queue Error=9104\r\n"));
    stop_and_close();
}

TEST_F(Capture_test, result_is_refused_and_its_place_emptied_while_no_image_is_ready)
{
    initialize();
    start();
    Pixels buffer(image_size);
    void* filled = buffer.data();
    EXPECT_EQ(VyraGetVideoResult(handle_, &filled, nullptr), VYRA_VIDEO_TIMEOUT);
    EXPECT_EQ(filled, nullptr);
    ASSERT_EQ(VyraSubmitVideoRequest(handle_, buffer.data(), 1), VYRA_OK);
    EXPECT_EQ(VyraGetVideoResult(handle_, &filled, nullptr), VYRA_VIDEO_TIMEOUT);
    deliver(image_of(1));
    EXPECT_EQ(VyraGetVideoResult(handle_, &filled, nullptr), VYRA_OK) << "the host need not ask for its value";
    EXPECT_EQ(filled, buffer.data());
    const std::string line = error_line("get_video_result", 9106);
    EXPECT_THAT(take_log(), ElementsAre(line, line));
    stop_and_close();
}

TEST_F(Capture_test, requests_are_refused_before_the_start_and_after_the_stop)
{
    initialize();
    handle_ = open();
    Pixels buffer(image_size);
    void* filled = buffer.data();
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(VyraSubmitVideoRequest(handle_, buffer.data(), 1), VYRA_VIDEO_STOPPED);
        EXPECT_EQ(VyraGetVideoResult(handle_, &filled, nullptr), VYRA_VIDEO_STOPPED);
        EXPECT_EQ(filled, nullptr);
        EXPECT_THAT(take_log(),
                    ElementsAre(error_line("submit_video_request", 9105), error_line("get_video_result", 9105)));
        ASSERT_EQ(VyraBrenvoZultaStartCamera(handle_), VYRA_OK);
        ASSERT_EQ(VyraStopVideo(handle_), VYRA_OK);
    }
}

TEST_F(Capture_test, null_buffer_is_a_refused_parameter)
{
    initialize();
    start();
    EXPECT_EQ(VyraSubmitVideoRequest(handle_, nullptr, 1), VYRA_BAD_PARAMETER);
    EXPECT_THAT(take_log(), ElementsAre(error_line("submit_video_request", 9105)));
    stop_and_close();
}

TEST_F(Capture_test, stop_releases_a_callback_that_is_parked_for_want_of_a_request)
{
    initialize();
    start();
    const Pixels pixels = image_of(1);
    const auto image = delivery_of(pixels);
    const std::uint64_t ticket = brenvozulta_sim_deliver_async(&image);
    ASSERT_NE(ticket, 0U);
    ASSERT_EQ(brenvozulta_sim_wait_callbacks_inside(1, patience_ms), 1);
    EXPECT_EQ(VyraStopVideo(handle_), VYRA_OK);
    ASSERT_EQ(brenvozulta_sim_wait_delivery_done(ticket, patience_ms, nullptr), 1);
    EXPECT_EQ(brenvozulta_sim_is_capturing(BRENVOZULTA_SIM_DEFAULT_SCANNER), 0);
    EXPECT_EQ(VyraCloseDevice_N(handle_), VYRA_OK);
}

TEST_F(Capture_test, request_releases_a_parked_callback_whose_image_fills_it)
{
    initialize();
    start();
    const Pixels pixels = image_of(9);
    const auto image = delivery_of(pixels);
    const std::uint64_t ticket = brenvozulta_sim_deliver_async(&image);
    ASSERT_EQ(brenvozulta_sim_wait_callbacks_inside(1, patience_ms), 1);
    Pixels buffer(image_size);
    ASSERT_EQ(VyraSubmitVideoRequest(handle_, buffer.data(), 3), VYRA_OK);
    ASSERT_EQ(brenvozulta_sim_wait_delivery_done(ticket, patience_ms, nullptr), 1);
    expect_result(buffer.data(), 3);
    EXPECT_EQ(buffer, pixels);
    stop_and_close();
}

// The first start's extraction thread may log that the second one's was quicker: the log is off.
TEST_F(Capture_test, second_start_without_a_stop_drops_the_requests_and_captures_on)
{
    ASSERT_EQ(VyraInitialize_N(nullptr, 0, 0), VYRA_OK);
    start();
    Pixels dropped(image_size);
    Pixels buffer(image_size);
    ASSERT_EQ(VyraSubmitVideoRequest(handle_, dropped.data(), 1), VYRA_OK);
    ASSERT_EQ(VyraBrenvoStartVideo(handle_, 0, 0), VYRA_OK);
    EXPECT_EQ(brenvozulta_sim_selected_config(BRENVOZULTA_SIM_DEFAULT_SCANNER), 13);
    ASSERT_EQ(VyraSubmitVideoRequest(handle_, buffer.data(), 2), VYRA_OK);
    deliver(image_of(7));
    expect_result(buffer.data(), 2);
    EXPECT_EQ(dropped, Pixels(image_size));
    stop_and_close();
}

TEST_F(Capture_test, stopped_scanner_may_be_stopped_again)
{
    initialize();
    start();
    brenvozulta_sim_set_idle_stop_result(0);
    EXPECT_EQ(VyraStopVideo(handle_), VYRA_OK);
    EXPECT_EQ(VyraStopVideo(handle_), VYRA_OK);
    EXPECT_EQ(VyraCloseDevice_N(handle_), VYRA_OK);
}

}  // namespace
