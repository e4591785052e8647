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

TEST_F(Drop_meter_test, SteadyFramesGiveTheRateAndNoDrops)
{
    steady(101);
    EXPECT_EQ(meter_.frames(), 101U);
    EXPECT_EQ(meter_.drops(), 0U);
    EXPECT_DOUBLE_EQ(meter_.frames_per_second(), 100.0);
}

TEST_F(Drop_meter_test, NoRateBeforeTheSecondFrame)
{
    EXPECT_EQ(meter_.frames_per_second(), 0.0);
    steady(1);
    EXPECT_EQ(meter_.frames_per_second(), 0.0);
}

TEST_F(Drop_meter_test, IntervalsWithoutARequestAreDrops)
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

TEST_F(Drop_meter_test, AFilledLastRequestThatIsReplacedAtOnceLosesNothing)
{
    steady(11);
    now_ += milliseconds(10);
    meter_.frame(now_);
    meter_.starved();
    meter_.waiting(now_ + milliseconds(1));
    EXPECT_EQ(meter_.drops(), 0U);
}

TEST_F(Drop_meter_test, ALatePollWithARequestLeftLosesNothing)
{
    steady(11);
    now_ += milliseconds(31);
    for (int i = 0; i < 3; ++i) {
        meter_.frame(now_);
    }
    meter_.waiting(now_);
    EXPECT_EQ(meter_.drops(), 0U);
}

TEST_F(Drop_meter_test, TheIntervalIsNotStretchedByTheDrops)
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
