// The frame queue: capacity, order and status of its requests.
#include "device/frame_queue.h"

#include <gmock/gmock.h>

#include <array>

namespace {

using kvs::brenvozulta::Frame_data;
using kvs::brenvozulta::Frame_queue;
using testing::Each;
using testing::ElementsAre;

using Buffer = std::array<unsigned char, 4>;

class Frame_queue_test : public testing::Test {
protected:
    // Adds requests with the contexts first, first + 1, ... and their buffers.
    void add(std::size_t count, std::uint64_t first = 0)
    {
        for (std::size_t i = 0; i < count; ++i) {
            const auto context = first + i;
            ASSERT_EQ(queue_.add_request(buffers_.at(context).data(), context), 0);
        }
    }

    std::int32_t fill(unsigned char value)
    {
        const Buffer image = {value, value, value, value};
        return queue_.fill(queue_.capture(), image.data(), image.size());
    }

    // Takes a ready request and removes it; the contexts of all, in order.
    std::vector<std::uint64_t> take_all()
    {
        std::vector<std::uint64_t> contexts;
        while (const auto frame = queue_.take_ready()) {
            contexts.push_back(frame->context);
            queue_.remove(frame->frame_id);
        }
        return contexts;
    }

    Frame_queue queue_;
    std::array<Buffer, 32> buffers_ = {};
};

TEST_F(Frame_queue_test, eight_pending_requests_fit_and_a_ninth_does_not)
{
    add(8);
    EXPECT_EQ(queue_.add_request(buffers_[8].data(), 8), 9104);
    for (unsigned char value = 1; value <= 9; ++value) {
        fill(value);
    }
    EXPECT_THAT(take_all(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST_F(Frame_queue_test, ready_and_taken_requests_count_like_pending_ones)
{
    add(8);
    for (unsigned char value = 1; value <= 5; ++value) {
        fill(value);
    }
    const auto taken = queue_.take_ready();
    ASSERT_TRUE(taken);
    ASSERT_TRUE(queue_.take_ready());
    EXPECT_EQ(queue_.add_request(buffers_[8].data(), 8), 9104);
    queue_.remove(taken->frame_id);
    EXPECT_EQ(queue_.add_request(buffers_[8].data(), 8), 0);
    EXPECT_EQ(queue_.add_request(buffers_[9].data(), 9), 9104);
}

TEST_F(Frame_queue_test, a_request_goes_from_pending_by_ready_to_taken)
{
    add(1, 7);
    EXPECT_FALSE(queue_.take_ready());
    EXPECT_EQ(fill(5), 0);
    const auto frame = queue_.take_ready();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->frame_status, kvs::brenvozulta::FRAME_TAKEN);
    EXPECT_EQ(frame->buffer, buffers_[7].data());
    EXPECT_EQ(frame->context, 7U);
    EXPECT_FALSE(queue_.take_ready());
    EXPECT_THAT(buffers_[7], Each(5));
}

TEST_F(Frame_queue_test, a_new_request_is_pending_and_holds_what_it_was_given)
{
    const Frame_data frame(buffers_.data(), 0xFEDCBA9876543210U, 0xFFFFFFFFU);
    EXPECT_EQ(frame.frame_status, 0U);
    EXPECT_EQ(frame.buffer, buffers_.data());
    EXPECT_EQ(frame.context, 0xFEDCBA9876543210U);
    EXPECT_EQ(frame.frame_id, 0xFFFFFFFFU);
}

TEST_F(Frame_queue_test, the_oldest_pending_request_is_filled_and_the_oldest_ready_one_taken)
{
    add(3);
    fill(1);
    fill(2);
    EXPECT_THAT(buffers_[0], Each(1));
    EXPECT_THAT(buffers_[1], Each(2));
    EXPECT_THAT(buffers_[2], Each(0));
    EXPECT_THAT(take_all(), ElementsAre(0, 1));
    add(1, 3);
    fill(3);
    fill(4);
    EXPECT_THAT(buffers_[2], Each(3));
    EXPECT_THAT(take_all(), ElementsAre(2, 3));
}

// Its callback may have waited, or come late.
TEST_F(Frame_queue_test, an_image_of_an_earlier_capture_is_lost)
{
    const std::uint32_t earlier = queue_.capture();
    queue_.end_capture();
    add(1);
    const Buffer image = {1, 2, 3, 4};
    EXPECT_EQ(queue_.fill(earlier, image.data(), image.size()), 0);
    EXPECT_THAT(buffers_[0], Each(0));
    EXPECT_FALSE(queue_.take_ready());
    fill(5);
    EXPECT_THAT(buffers_[0], Each(5));
}

TEST_F(Frame_queue_test, exactly_the_size_is_copied)
{
    add(1);
    const Buffer image = {1, 2, 3, 4};
    EXPECT_EQ(queue_.fill(queue_.capture(), image.data(), 3), 0);
    EXPECT_THAT(buffers_[0], ElementsAre(1, 2, 3, 0));
    EXPECT_TRUE(queue_.take_ready());
}

TEST_F(Frame_queue_test, without_a_pending_request_an_image_is_lost)
{
    EXPECT_EQ(fill(1), 0);
    add(2);
    fill(2);
    fill(3);
    ASSERT_TRUE(queue_.take_ready());
    EXPECT_EQ(fill(4), 0);
    EXPECT_THAT(buffers_[0], Each(2));
    EXPECT_THAT(buffers_[1], Each(3));
    EXPECT_THAT(take_all(), ElementsAre(1));
}

TEST_F(Frame_queue_test, clear_drops_requests_of_every_status)
{
    add(8);
    fill(1);
    fill(2);
    const auto taken = queue_.take_ready();
    queue_.clear();
    EXPECT_FALSE(queue_.take_ready());
    fill(3);
    EXPECT_THAT(buffers_[2], Each(0));
    EXPECT_EQ(taken->context, 0U) << "who took a request keeps it";
    add(8, 8);
    EXPECT_EQ(queue_.add_request(buffers_[16].data(), 16), 9104);
}

TEST_F(Frame_queue_test, remove_takes_the_one_request_and_keeps_the_order_of_the_rest)
{
    add(4);
    for (unsigned char value = 1; value <= 4; ++value) {
        fill(value);
    }
    const auto first = queue_.take_ready();
    const auto second = queue_.take_ready();
    queue_.remove(second->frame_id);
    queue_.remove(second->frame_id);
    queue_.remove(first->frame_id - 1);
    EXPECT_THAT(take_all(), ElementsAre(2, 3));
    add(7, 4);
    EXPECT_EQ(queue_.add_request(buffers_[11].data(), 11), 9104) << "the first is still there";
}

TEST_F(Frame_queue_test, the_numbers_of_the_requests_run_through_all_queues)
{
    Frame_queue other;
    const auto next_id = [this](Frame_queue& queue) {
        queue.add_request(buffers_[0].data(), 0);
        queue.fill(queue.capture(), buffers_[1].data(), 1);
        const auto frame = queue.take_ready();
        queue.remove(frame->frame_id);
        return frame->frame_id;
    };
    const std::uint32_t start = next_id(queue_);
    EXPECT_EQ(next_id(other), start + 1);
    EXPECT_EQ(next_id(queue_), start + 2);
    for (int i = 0; i < 8; ++i) {
        queue_.add_request(buffers_[0].data(), 0);
    }
    EXPECT_EQ(queue_.add_request(buffers_[0].data(), 0), 9104);
    EXPECT_EQ(next_id(other), start + 11) << "a refused request has no number";
}

TEST_F(Frame_queue_test, a_queue_that_ends_leaves_the_buffers_to_the_host)
{
    {
        Frame_queue ending;
        ASSERT_EQ(ending.add_request(buffers_[0].data(), 0), 0);
    }
    EXPECT_THAT(buffers_[0], Each(0));
}

}  // namespace
