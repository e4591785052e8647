// Functions that only look like the library's, for tests of the C++ objects.
#pragma once

#include <cstdint>
#include <deque>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "vyra/vyra.hpp"

namespace test_support {

// Of a library that has one scanner and every image ready at once.
struct Pretended {
    std::deque<std::int32_t> closes;  // results of the next closes
    int closed = 0;
    std::int32_t stop_result = VYRA_OK;
    int submitted = 0;
    int terminated = 0;
    std::int32_t terminate_result = VYRA_OK;
    VyraPowerEventCallback power = nullptr;
    VyraUsbEventCallback usb = nullptr;
    bool usb_accepted = true;
};
inline Pretended pretended;
inline std::uint8_t buffer[VYRA_FLAT_SIZE];

class Pretended_library_test : public ::testing::Test {
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
        functions_.VyraStopVideo = [](std::uint32_t) { return pretended.stop_result; };
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

}  // namespace test_support
