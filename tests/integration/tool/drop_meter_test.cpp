#include "drop_meter.h"

#include <gtest/gtest.h>

namespace tool_tests {
namespace {

using std::chrono::milliseconds;
using vyra_tool::Drop_meter;

class Drop_meter_test : public ::testing::Test {
protected:
    // Frames every 10 ms, each fetched while other requests wait.
    void steady(int frames)
    {
        for (int i = 0; i < frames; ++i) {
            now_ += milliseconds(10);
            meter_.frame(now_);
            meter_.waiting(now_);
        }
    }

    Drop_meter meter_;
    Drop_meter::Time now_{milliseconds(1000)};
};

TEST_F(Drop_meter_test, steady_frames_give_the_rate_and_no_drops)
{
    steady(101);
    EXPECT_EQ(meter_.frames(), 101U);
    EXPECT_EQ(meter_.drops(), 0U);
    EXPECT_DOUBLE_EQ(meter_.frames_per_second().value(), 100.0);
}

TEST_F(Drop_meter_test, no_rate_and_no_interval_before_the_second_frame)
{
    for (int frames = 0; frames < 2; ++frames) {
        EXPECT_FALSE(meter_.frames_per_second());
        EXPECT_FALSE(meter_.median_interval());
        EXPECT_FALSE(meter_.longest_interval());
        steady(1);
    }
    EXPECT_TRUE(meter_.frames_per_second());
}

TEST_F(Drop_meter_test, the_median_is_the_usual_interval_and_the_longest_the_odd_one)
{
    steady(8);
    now_ += milliseconds(90);
    steady(3);
    EXPECT_DOUBLE_EQ(meter_.median_interval().value().count(), 0.010);
    EXPECT_DOUBLE_EQ(meter_.longest_interval().value().count(), 0.100);
}

TEST_F(Drop_meter_test, the_median_is_of_the_last_thousand_intervals)
{
    steady(1001);
    for (int i = 0; i < 501; ++i) {
        now_ += milliseconds(10);
        steady(1);
    }
    EXPECT_DOUBLE_EQ(meter_.median_interval().value().count(), 0.020);
}

TEST_F(Drop_meter_test, intervals_without_a_request_are_drops)
{
    steady(11);
    now_ += milliseconds(104);  // the tool was away; meanwhile its four requests were filled
    for (int i = 0; i < 4; ++i) {
        meter_.frame(now_);
    }
    meter_.starved();
    meter_.waiting(now_);
    EXPECT_EQ(meter_.drops(), 6U);
}

TEST_F(Drop_meter_test, a_filled_last_request_that_is_replaced_at_once_loses_nothing)
{
    steady(11);
    now_ += milliseconds(10);
    meter_.frame(now_);
    meter_.starved();
    meter_.waiting(now_ + milliseconds(1));
    EXPECT_EQ(meter_.drops(), 0U);
}

TEST_F(Drop_meter_test, a_late_poll_with_a_request_left_loses_nothing)
{
    steady(11);
    now_ += milliseconds(31);
    for (int i = 0; i < 3; ++i) {
        meter_.frame(now_);
    }
    meter_.waiting(now_);
    EXPECT_EQ(meter_.drops(), 0U);
}

TEST_F(Drop_meter_test, the_interval_is_not_stretched_by_the_drops)
{
    for (int round = 1; round <= 3; ++round) {
        steady(11);
        now_ += milliseconds(104);
        for (int i = 0; i < 4; ++i) {
            meter_.frame(now_);
        }
        meter_.starved();
        meter_.waiting(now_);
    }
    EXPECT_EQ(meter_.drops(), 18U);
}

}  // namespace
}  // namespace tool_tests
