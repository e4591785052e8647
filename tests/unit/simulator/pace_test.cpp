// When automatic images are due.
#include "pace.h"

#include <gtest/gtest.h>

namespace simulator_test {
namespace {

using brenvozulta_simulator::Pace;
using std::chrono::milliseconds;

constexpr double ten_a_second = 10;
constexpr milliseconds period{100};

class Pace_test : public testing::Test {
protected:
    const Pace::Clock::time_point start_{milliseconds(5000)};
    Pace pace_{ten_a_second, start_};
};

TEST_F(Pace_test, the_first_image_is_due_after_a_period)
{
    EXPECT_EQ(pace_.due(), start_ + period);
}

TEST_F(Pace_test, images_that_are_a_little_late_keep_the_rate)
{
    pace_.advance(start_ + period + milliseconds(30));
    EXPECT_EQ(pace_.due(), start_ + 2 * period);
    pace_.advance(start_ + 2 * period + milliseconds(99));
    EXPECT_EQ(pace_.due(), start_ + 3 * period);
}

TEST_F(Pace_test, after_a_hold_up_the_next_image_is_a_period_away)
{
    const auto late = start_ + period + milliseconds(730);
    pace_.advance(late);
    EXPECT_EQ(pace_.due(), late + period);
    pace_.advance(late + period);
    EXPECT_EQ(pace_.due(), late + 2 * period);
}

TEST_F(Pace_test, drawing_that_takes_longer_than_a_period_goes_on_without_a_pause)
{
    auto now = pace_.due();
    for (int image = 0; image < 10; ++image) {
        now += milliseconds(150);
        pace_.advance(now);
        EXPECT_EQ(pace_.due(), now) << "image " << image;
    }
}

TEST_F(Pace_test, the_smallest_rates_are_slow)
{
    for (const double rate : {1e-9, 1e-300, 5e-324}) {
        EXPECT_GT(Pace(rate, start_).due(), start_ + std::chrono::hours(24)) << rate;
    }
}

}  // namespace
}  // namespace simulator_test
