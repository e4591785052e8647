// Subscribers that end the notifier thread from within.
#include "lifetime_test.h"

namespace lifetime_tests {
namespace {

TEST(Ended_thread_test, of_a_usb_subscriber_is_not_waited_for)
{
    const auto result = run_host("ended_thread_host", {"usb"});
    expect_good_end(result);
    EXPECT_EQ(result.err, "VyraTerminate 0\n");
}

// It takes the lock of the power subscriptions with it: then nobody can be taken out of them any more.
TEST(Ended_thread_test, of_a_power_subscriber_is_not_waited_for_either)
{
    const auto result = run_host("ended_thread_host", {"power"});
    expect_good_end(result);
    EXPECT_THAT(result.err, ::testing::AnyOf("VyraTerminate 0\n", "VyraTerminate 9000\n"));
}

}  // namespace
}  // namespace lifetime_tests
