// The signal of the frame queue: when a callback waits, what wakes it, and the signal that is kept.
#include <gtest/gtest.h>

#include <atomic>
#include <boost/thread/thread.hpp>

#include "device/frame_queue.h"
#include "support/boost_waiting.h"

namespace {

using kvs::brenvozulta::Frame_queue;
using test_support::moment;
using test_support::patience;

class Frame_queue_signal_test : public testing::Test {
protected:
    ~Frame_queue_signal_test() override
    {
        while (waiter_.joinable() && !waiter_.try_join_for(moment)) {
            queue_.wake_waiter();
        }
    }

    void begin_wait()
    {
        waiter_ = boost::thread([this, capture = queue_.capture()] { queue_.wait_for_request(capture); });
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

TEST_F(Frame_queue_signal_test, a_wait_on_an_empty_queue_ends_with_the_first_request)
{
    begin_wait();
    EXPECT_TRUE(waits());
    queue_.add_request(&buffer_, 0);
    EXPECT_TRUE(returns());
}

TEST_F(Frame_queue_signal_test, a_wait_ends_with_a_wake_up)
{
    begin_wait();
    EXPECT_TRUE(waits());
    queue_.wake_waiter();
    EXPECT_TRUE(returns());
}

TEST_F(Frame_queue_signal_test, a_wake_up_that_nobody_waits_for_releases_one_later_wait)
{
    queue_.wake_waiter();
    queue_.wake_waiter();
    EXPECT_TRUE(passes());
    begin_wait();
    EXPECT_TRUE(waits());
}

TEST_F(Frame_queue_signal_test, a_wait_with_requests_queued_returns_at_once_and_leaves_the_signal)
{
    queue_.add_request(&buffer_, 0);
    EXPECT_TRUE(passes());
    EXPECT_TRUE(passes());
    queue_.clear();
    EXPECT_TRUE(passes()) << "the signal of the request is kept";
    begin_wait();
    EXPECT_TRUE(waits()) << "and consumed by one wait";
}

TEST_F(Frame_queue_signal_test, requests_that_are_filled_or_taken_still_count_as_queued)
{
    queue_.wake_waiter();
    EXPECT_TRUE(passes());
    queue_.add_request(&buffer_, 0);
    const unsigned char image = 1;
    queue_.fill(queue_.capture(), &image, 1);
    const auto frame = queue_.take_ready();
    EXPECT_TRUE(passes());
    queue_.remove(frame->frame_id);
    EXPECT_TRUE(passes()) << "the signal of the request is kept";
    begin_wait();
    EXPECT_TRUE(waits());
}

TEST_F(Frame_queue_signal_test, only_the_request_that_ends_the_emptiness_signals)
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

TEST_F(Frame_queue_signal_test, a_request_after_the_queue_was_emptied_signals_again)
{
    for (int round = 0; round < 2; ++round) {
        queue_.add_request(&buffer_, 0);
        const unsigned char image = 1;
        queue_.fill(queue_.capture(), &image, 1);
        queue_.remove(queue_.take_ready()->frame_id);
        EXPECT_TRUE(passes()) << round;
        begin_wait();
        EXPECT_TRUE(waits()) << round;
        queue_.wake_waiter();
        EXPECT_TRUE(returns());
    }
}

TEST_F(Frame_queue_signal_test, every_wait_ends_with_its_capture)
{
    begin_wait();
    boost::thread other([this, capture = queue_.capture()] { queue_.wait_for_request(capture); });
    EXPECT_TRUE(waits());
    EXPECT_FALSE(other.try_join_for(moment));
    queue_.end_capture();
    EXPECT_TRUE(returns());
    other.join();
}

TEST_F(Frame_queue_signal_test, a_wait_of_an_earlier_capture_returns_at_once_and_the_end_is_not_kept)
{
    const std::uint32_t earlier = queue_.capture();
    queue_.end_capture();
    queue_.wait_for_request(earlier);
    begin_wait();
    EXPECT_TRUE(waits());
}

TEST_F(Frame_queue_signal_test, a_wait_that_ends_with_its_capture_consumes_the_signal_too)
{
    const std::uint32_t earlier = queue_.capture();
    queue_.wake_waiter();
    queue_.end_capture();
    queue_.wait_for_request(earlier);
    begin_wait();
    EXPECT_TRUE(waits());
}

TEST_F(Frame_queue_signal_test, clear_does_not_wake_a_wait)
{
    begin_wait();
    EXPECT_TRUE(waits());
    queue_.clear();
    EXPECT_TRUE(waits());
}

TEST_F(Frame_queue_signal_test, one_wake_up_releases_one_wait)
{
    std::atomic<int> returned{0};
    const auto wait = [&] {
        queue_.wait_for_request(queue_.capture());
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
