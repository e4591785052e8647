// The signal of the frame queue: when a callback waits, what wakes it, and the signal that is kept.
#include <gtest/gtest.h>

#include <atomic>
#include <boost/thread/thread.hpp>

#include "device/frame_queue.h"
#include "unit/device/patience.h"

namespace {

using kvs::brenvozulta::Frame_queue;
using test_support::moment;
using test_support::patience;

class Frame_queue_signal : public testing::Test {
protected:
    ~Frame_queue_signal() override
    {
        while (waiter_.joinable() && !waiter_.try_join_for(moment)) {
            queue_.wake_waiter();
        }
    }

    void begin_wait()
    {
        waiter_ = boost::thread([this] { queue_.wait_for_request(); });
    }

    bool returns() { return waiter_.try_join_for(patience); }
    bool waits() { return !waiter_.try_join_for(moment); }

    // A wait that is expected to return at once.
    bool passes()
    {
        begin_wait();
        return returns();
    }

    Frame_queue queue_;
    unsigned char buffer_ = 0;
    boost::thread waiter_;
};

TEST_F(Frame_queue_signal, A_Wait_On_An_Empty_Queue_Ends_With_The_First_Request)
{
    begin_wait();
    EXPECT_TRUE(waits());
    queue_.add_request(&buffer_, 0);
    EXPECT_TRUE(returns());
}

TEST_F(Frame_queue_signal, A_Wait_Ends_With_A_Wake_Up)
{
    begin_wait();
    EXPECT_TRUE(waits());
    queue_.wake_waiter();
    EXPECT_TRUE(returns());
}

TEST_F(Frame_queue_signal, A_Wake_Up_That_Nobody_Waits_For_Releases_One_Later_Wait)
{
    queue_.wake_waiter();
    queue_.wake_waiter();
    EXPECT_TRUE(passes());
    begin_wait();
    EXPECT_TRUE(waits());
}

TEST_F(Frame_queue_signal, A_Wait_With_Requests_Queued_Returns_At_Once_And_Leaves_The_Signal)
{
    queue_.add_request(&buffer_, 0);
    EXPECT_TRUE(passes());
    EXPECT_TRUE(passes());
    queue_.clear();
    EXPECT_TRUE(passes()) << "the signal of the request is kept";
    begin_wait();
    EXPECT_TRUE(waits()) << "and consumed by one wait";
}

TEST_F(Frame_queue_signal, Requests_That_Are_Filled_Or_Taken_Still_Count_As_Queued)
{
    queue_.wake_waiter();
    EXPECT_TRUE(passes());
    queue_.add_request(&buffer_, 0);
    const unsigned char image = 1;
    queue_.fill(&image, 1);
    const auto frame = queue_.take_ready();
    EXPECT_TRUE(passes());
    queue_.remove(frame->frame_id);
    EXPECT_TRUE(passes()) << "the signal of the request is kept";
    begin_wait();
    EXPECT_TRUE(waits());
}

TEST_F(Frame_queue_signal, Only_The_Request_That_Ends_The_Emptiness_Signals)
{
    begin_wait();
    EXPECT_TRUE(waits());
    queue_.add_request(&buffer_, 0);
    EXPECT_TRUE(returns());  // the signal is consumed
    queue_.add_request(&buffer_, 1);
    queue_.add_request(&buffer_, 2);
    queue_.clear();
    begin_wait();
    EXPECT_TRUE(waits());
}

TEST_F(Frame_queue_signal, A_Request_After_The_Queue_Was_Emptied_Signals_Again)
{
    for (int round = 0; round < 2; ++round) {
        queue_.add_request(&buffer_, 0);
        const unsigned char image = 1;
        queue_.fill(&image, 1);
        queue_.remove(queue_.take_ready()->frame_id);
        EXPECT_TRUE(passes()) << round;
        begin_wait();
        EXPECT_TRUE(waits()) << round;
        queue_.wake_waiter();
        EXPECT_TRUE(returns());
    }
}

TEST_F(Frame_queue_signal, Clear_Does_Not_Wake_A_Wait)
{
    begin_wait();
    EXPECT_TRUE(waits());
    queue_.clear();
    EXPECT_TRUE(waits());
}

TEST_F(Frame_queue_signal, One_Wake_Up_Releases_One_Wait)
{
    std::atomic<int> returned{0};
    const auto wait = [&] {
        queue_.wait_for_request();
        ++returned;
    };
    boost::thread first(wait);
    boost::thread second(wait);
    queue_.wake_waiter();
    while (!first.try_join_for(moment) && !second.try_join_for(moment)) {
    }
    EXPECT_TRUE(!first.try_join_for(moment) || !second.try_join_for(moment));
    EXPECT_EQ(returned, 1);
    queue_.wake_waiter();
    if (first.joinable()) {
        first.join();
    }
    if (second.joinable()) {
        second.join();
    }
}

}  // namespace
