// What the C++ objects ask of the library: against functions that only look like it.
#include <chrono>
#include <string>
#include <vector>

#include "sdk/pretended_library.h"

namespace {

using test_support::pretended;

class Wrapper_calls_test : public test_support::Pretended_library_test {};

// A buffer that is given back although the scanner is not closed would be written into.
TEST_F(Wrapper_calls_test, close_that_the_busy_library_refused_is_made_until_it_is_done)
{
    vyra::library library(functions_);
    {
        vyra::scanner scanner(library, "scanner");
        vyra::video video(scanner, vyra::mode::flat);
        pretended.stop_result = VYRA_INTERNAL;
        pretended.closes = {VYRA_INTERNAL, VYRA_OUT_OF_RESOURCE};
        pretended.closes.resize(20, VYRA_INTERNAL);
    }
    EXPECT_EQ(pretended.closed, 21);
}

TEST_F(Wrapper_calls_test, subscriber_that_throws_ends_the_program)
{
    const auto throwing = [this] {
        vyra::library library(functions_);
        const vyra::power_subscription power(library, [](bool) { throw std::runtime_error("nobody catches this"); });
        pretended.power(SysPowerSleep);
    };
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(throwing(), "nobody catches this");
}

TEST_F(Wrapper_calls_test, refused_release_is_asked_for_three_times)
{
    {
        vyra::library library(functions_);
        pretended.terminate_result = VYRA_INTERNAL;
    }
    EXPECT_EQ(pretended.terminated, 3);
}

TEST_F(Wrapper_calls_test, power_events_reach_their_subscribers_until_they_end)
{
    std::vector<bool> told;
    {
        vyra::library library(functions_);
        {
            const vyra::power_subscription power(library, [&](bool asleep) { told.push_back(asleep); });
            pretended.power(SysPowerSleep);
            pretended.power(SysPowerResume);
        }
        pretended.power(SysPowerSleep);
    }
    EXPECT_THAT(told, ::testing::ElementsAre(true, false));
    EXPECT_EQ(pretended.power, nullptr) << "the library has forgotten it";
}

TEST_F(Wrapper_calls_test, usb_events_reach_the_subscriber_of_their_pair)
{
    vyra::library library(functions_);
    std::vector<std::string> told;
    {
        const vyra::usb_subscription one(library, 1, 2,
                                         [&](bool arrived) { told.emplace_back(arrived ? "1+" : "1-"); });
        const vyra::usb_subscription two(library, 3, 4,
                                         [&](bool arrived) { told.emplace_back(arrived ? "3+" : "3-"); });
        pretended.usb(3, 4, UsbDevicePlugged);
        pretended.usb(1, 2, UsbDeviceUnplugged);
    }
    EXPECT_THAT(told, ::testing::ElementsAre("3+", "1-"));
    EXPECT_EQ(pretended.usb, nullptr);
    pretended.usb_accepted = false;
    EXPECT_THROW(vyra::usb_subscription(library, 0, 0, [](bool) {}), vyra::error);
}

}  // namespace
