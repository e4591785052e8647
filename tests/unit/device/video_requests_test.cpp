// The host's side of the exchange of image buffers.
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string submit = "submit_video_request";
const std::string get = "get_video_result";

std::string stopped_line(const std::string& operation)
{
    return error_line(operation, 9105);
}

class Video_requests_test : public Device_test {
protected:
    // Video does not run: both are refused, in each of the ways to call them.
    void expect_stopped()
    {
        EXPECT_EQ(device().submit_video_request(buffers_[0].data(), 1), 9105);
        EXPECT_EQ(device().submit_video_request(nullptr, 1), 9105);
        EXPECT_THAT(take_log(), ElementsAre(stopped_line(submit), stopped_line(submit)));
        void* buffer = this;
        std::uint64_t context = 77;
        EXPECT_EQ(device().get_video_result(&buffer, &context), 9105);
        EXPECT_EQ(buffer, nullptr);
        EXPECT_EQ(context, 77U);
        EXPECT_THAT(take_log(), ElementsAre(stopped_line(get)));
    }

    void expect_nothing_ready()
    {
        void* buffer = this;
        std::uint64_t context = 77;
        EXPECT_EQ(device().get_video_result(&buffer, &context), 9106);
        EXPECT_EQ(buffer, nullptr);
        EXPECT_EQ(context, 77U);
        EXPECT_THAT(take_log(), ElementsAre(error_line(get, 9106)));
    }

    void expect_result(std::size_t number, std::uint8_t value)
    {
        void* buffer = nullptr;
        std::uint64_t context = 0;
        EXPECT_EQ(device().get_video_result(&buffer, &context), 0);
        EXPECT_EQ(buffer, buffers_[number].data());
        EXPECT_EQ(context, 0xABCD000000000000U + number);
        EXPECT_EQ(buffers_[number], image_of(value));
    }

    std::int32_t submit_buffer(std::size_t number)
    {
        return device().submit_video_request(buffers_[number].data(), 0xABCD000000000000U + number);
    }

    std::vector<std::vector<std::uint8_t>> buffers_{9, image_of(0)};
};

TEST_F(Video_requests_test, in_idle_both_are_refused)
{
    open_device();
    expect_stopped();
}

TEST_F(Video_requests_test, while_a_stop_is_requested_both_are_refused)
{
    open_device();
    device().request_stop();
    expect_stopped();
}

TEST_F(Video_requests_test, when_stopped_both_are_refused_until_the_next_start)
{
    running_device();
    ASSERT_EQ(submit_buffer(0), 0);
    ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);
    ASSERT_EQ(device().stop_video(), 0);
    expect_stopped();
    ASSERT_EQ(device().start_camera(), 0);
    expect_nothing_ready();
    EXPECT_EQ(submit_buffer(0), 0);
}

TEST_F(Video_requests_test, a_null_buffer_is_9109_and_its_line_says_9105)
{
    running_device();
    EXPECT_EQ(device().submit_video_request(nullptr, 1), 9109);
    EXPECT_THAT(take_log(), ElementsAre(stopped_line(submit)));
    expect_nothing_ready();
}

TEST_F(Video_requests_test, eight_requests_fit_and_the_ninth_is_9104)
{
    running_device();
    for (std::size_t number = 0; number < 8; ++number) {
        EXPECT_EQ(submit_buffer(number), 0);
    }
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_EQ(submit_buffer(8), 9104);
    EXPECT_THAT(take_log(), ElementsAre("submit_video_request:    Add frame queue Error=9104\r\n"));
    EXPECT_EQ(device().submit_video_request(nullptr, 1), 9109) << "a null buffer comes before the full queue";
    EXPECT_THAT(take_log(), ElementsAre(error_line("submit_video_request", 9105)));
}

TEST_F(Video_requests_test, the_ninth_is_9104_also_when_the_eight_are_filled)
{
    running_device();
    for (std::size_t number = 0; number < 8; ++number) {
        ASSERT_EQ(submit_buffer(number), 0);
        ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);
    }
    EXPECT_EQ(submit_buffer(8), 9104);
    EXPECT_THAT(take_log(), ElementsAre("submit_video_request:    Add frame queue Error=9104\r\n"));
    expect_result(0, 1);
    EXPECT_EQ(submit_buffer(8), 0) << "a result that was fetched makes room";
}

TEST_F(Video_requests_test, a_get_before_any_image_leaves_the_request_queued)
{
    running_device();
    ASSERT_EQ(submit_buffer(0), 0);
    expect_nothing_ready();
    ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);
    expect_result(0, 1);
    expect_nothing_ready();
}

TEST_F(Video_requests_test, two_images_fill_two_of_three_requests_in_their_order)
{
    running_device();
    for (std::size_t number = 0; number < 3; ++number) {
        ASSERT_EQ(submit_buffer(number), 0);
    }
    ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);
    ASSERT_EQ(deliver(image_of(2), image_width, image_height), 0);
    expect_result(0, 1);
    expect_result(1, 2);
    expect_nothing_ready();
    ASSERT_EQ(deliver(image_of(3), image_width, image_height), 0);
    expect_result(2, 3);
}

TEST_F(Video_requests_test, without_a_place_for_the_context_the_buffer_is_returned)
{
    running_device();
    ASSERT_EQ(submit_buffer(0), 0);
    ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);
    void* buffer = nullptr;
    EXPECT_EQ(device().get_video_result(&buffer, nullptr), 0);
    EXPECT_EQ(buffer, buffers_[0].data());
}

TEST_F(Video_requests_test, the_same_buffer_may_be_handed_in_twice)
{
    running_device();
    ASSERT_EQ(submit_buffer(0), 0);
    ASSERT_EQ(submit_buffer(0), 0);
    ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);
    expect_result(0, 1);
    ASSERT_EQ(deliver(image_of(2), image_width, image_height), 0);
    expect_result(0, 2);
}

// The driver's own thread and pace against a host that polls.
TEST_F(Video_requests_test, images_of_a_capture_reach_the_host_in_order)
{
    running_device();
    const std::vector<std::uint8_t> empty(1600 * 1500, 0);
    std::vector<std::vector<std::uint8_t>> large(3, empty);
    brenvozulta_sim_set_frame_rate(1000);
    for (std::size_t number = 0; number < large.size(); ++number) {
        ASSERT_EQ(device().submit_video_request(large[number].data(), number), 0);
    }
    for (std::uint64_t fetched = 0; fetched < 12; ++fetched) {
        void* buffer = nullptr;
        std::uint64_t context = 99;
        ASSERT_TRUE(becomes_true([&] { return device().get_video_result(&buffer, &context) == 0; }));
        EXPECT_EQ(context, fetched % 3);
        EXPECT_EQ(buffer, large[fetched % 3].data());
        EXPECT_NE(large[fetched % 3], empty);
        ASSERT_EQ(device().submit_video_request(buffer, context), 0);
    }
    EXPECT_EQ(device().stop_video(), 0);
    // How often nothing was ready is the driver's pace.
    EXPECT_THAT(take_log(), ::testing::Each(error_line("get_video_result", 9106)));
}

}  // namespace
