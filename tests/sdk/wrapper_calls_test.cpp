// What the C++ objects ask of the library: against functions that only look like it.
#include <chrono>
#include <deque>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/device/allocation_counter.h"
#include "vyra/vyra.hpp"

namespace {

using namespace std::chrono_literals;

// Of a library that has one scanner and every image ready at once.
struct Pretended {
    std::deque<std::int32_t> closes;  // results of the next closes
    int closed = 0;
    int submitted = 0;
    int terminated = 0;
    std::int32_t terminate_result = VYRA_OK;
    VyraPowerEventCallback power = nullptr;
    VyraUsbEventCallback usb = nullptr;
    bool usb_accepted = true;
};
Pretended pretended;
std::uint8_t buffer[VYRA_FLAT_SIZE];

class Wrapper_calls_test : public ::testing::Test {
protected:
    void SetUp() override
    {
        pretended = {};
        functions_.VyraInitialize_N = [](VyraDeviceEventCallback, std::uint32_t, std::int32_t) { return 0; };
        functions_.VyraTerminate = [] {
            ++pretended.terminated;
            return pretended.terminate_result;
        };
        functions_.VyraOpenDevice = [](const char*, std::uint32_t* handle) {
            *handle = 0;
            return 0;
        };
        functions_.VyraCloseDevice_N = [](std::uint32_t) {
            ++pretended.closed;
            std::int32_t result = VYRA_OK;
            if (!pretended.closes.empty()) {
                result = pretended.closes.front();
                pretended.closes.pop_front();
            }
            return result;
        };
        functions_.VyraBrenvoStartVideo = [](std::uint32_t, std::uint32_t, std::uint32_t) { return 0; };
        functions_.VyraStopVideo = [](std::uint32_t) { return 0; };
        functions_.VyraSubmitVideoRequest = [](std::uint32_t, void*, std::uint64_t) {
            ++pretended.submitted;
            return 0;
        };
        functions_.VyraGetVideoResult = [](std::uint32_t, void** filled, std::uint64_t*) {
            *filled = buffer;
            return 0;
        };
        functions_.SubscribeToPowerEvent = [](VyraPowerEventCallback callback) {
            pretended.power = callback;
            return true;
        };
        functions_.UnsubscribeToPowerEvent = [](VyraPowerEventCallback) {
            pretended.power = nullptr;
            return true;
        };
        functions_.SubscribeToUsbEvent = [](int, int, VyraUsbEventCallback callback) {
            pretended.usb = callback;
            return pretended.usb_accepted;
        };
        functions_.UnSubscribeToUsbEvent = [](int, int) {
            pretended.usb = nullptr;
            return true;
        };
    }

    VyraFunctions functions_ = {};
};

TEST_F(Wrapper_calls_test, images_need_no_memory)
{
    vyra::library library(functions_);
    vyra::scanner scanner(library, "scanner");
    vyra::video video(scanner, vyra::mode::flat);
    video.submit(buffer, sizeof buffer);
    const std::size_t before = test_support::allocations_of_this_thread();
    for (int i = 0; i < 100; ++i) {
        video.submit(*video.wait(1s));
    }
    EXPECT_EQ(test_support::allocations_of_this_thread(), before);
    EXPECT_EQ(pretended.submitted, 101);
}

TEST_F(Wrapper_calls_test, close_that_the_busy_library_refused_is_made_again)
{
    vyra::library library(functions_);
    {
        vyra::scanner scanner(library, "scanner");
        pretended.closes = {VYRA_INTERNAL, VYRA_OUT_OF_RESOURCE};
    }
    EXPECT_EQ(pretended.closed, 3);
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
