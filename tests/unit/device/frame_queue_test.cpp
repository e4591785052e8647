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
        return queue_.fill(image.data(), image.size());
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

TEST_F(Frame_queue_test, Eight_Pending_Requests_Fit_And_A_Ninth_Does_Not)
{
    add(8);
    EXPECT_EQ(queue_.add_request(buffers_[8].data(), 8), 9104);
    for (unsigned char value = 1; value <= 9; ++value) {
        fill(value);
    }
    EXPECT_THAT(take_all(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST_F(Frame_queue_test, Ready_And_Taken_Requests_Count_Like_Pending_Ones)
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

TEST_F(Frame_queue_test, A_Request_Goes_From_Pending_By_Ready_To_Taken)
{
    add(1, 7);
    EXPECT_FALSE(queue_.take_ready());
    EXPECT_EQ(fill(5), 0);
    const auto frame = queue_.take_ready();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->frame_status, kvs::brenvozulta::FRAME_TAKEN);
    EXPECT_EQ(frame->buffer, buffers_[7].data());
    EXPECT_EQ(frame->context, 7u);
    EXPECT_FALSE(queue_.take_ready());
    EXPECT_THAT(buffers_[7], Each(5));
}

TEST_F(Frame_queue_test, A_New_Request_Is_Pending_And_Holds_What_It_Was_Given)
{
    const Frame_data frame(buffers_.data(), 0xFEDCBA9876543210u, 0xFFFFFFFFu);
    EXPECT_EQ(frame.frame_status, 0u);
    EXPECT_EQ(frame.buffer, buffers_.data());
    EXPECT_EQ(frame.context, 0xFEDCBA9876543210u);
    EXPECT_EQ(frame.frame_id, 0xFFFFFFFFu);
}

TEST_F(Frame_queue_test, The_Oldest_Pending_Request_Is_Filled_And_The_Oldest_Ready_One_Taken)
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

TEST_F(Frame_queue_test, Exactly_The_Size_Is_Copied)
{
    add(1);
    const Buffer image = {1, 2, 3, 4};
    EXPECT_EQ(queue_.fill(image.data(), 3), 0);
    EXPECT_THAT(buffers_[0], ElementsAre(1, 2, 3, 0));
    EXPECT_TRUE(queue_.take_ready());
}

TEST_F(Frame_queue_test, Without_A_Pending_Request_An_Image_Is_Lost)
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

TEST_F(Frame_queue_test, Clear_Drops_Requests_Of_Every_Status)
{
    add(8);
    fill(1);
    fill(2);
    const auto taken = queue_.take_ready();
    queue_.clear();
    EXPECT_FALSE(queue_.take_ready());
    fill(3);
    EXPECT_THAT(buffers_[2], Each(0));
    EXPECT_EQ(taken->context, 0u) << "who took a request keeps it";
    add(8, 8);
    EXPECT_EQ(queue_.add_request(buffers_[16].data(), 16), 9104);
}

TEST_F(Frame_queue_test, Remove_Takes_The_One_Request_And_Keeps_The_Order_Of_The_Rest)
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

TEST_F(Frame_queue_test, The_Numbers_Of_The_Requests_Run_Through_All_Queues)
{
    Frame_queue other;
    const auto next_id = [this](Frame_queue& queue) {
        queue.add_request(buffers_[0].data(), 0);
        queue.fill(buffers_[1].data(), 1);
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

TEST_F(Frame_queue_test, A_Queue_That_Ends_Leaves_The_Buffers_To_The_Host)
{
    {
        Frame_queue ending;
        ASSERT_EQ(ending.add_request(buffers_[0].data(), 0), 0);
    }
    EXPECT_THAT(buffers_[0], Each(0));
}

}  // namespace
