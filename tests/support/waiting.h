// How long tests wait.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <thread>

namespace test_support {

constexpr std::uint32_t patience_ms = 20'000;  // for what must happen; a test that waits so long has failed
constexpr std::uint32_t moment_ms = 20;        // for what must not: whatever does not wait has returned by then

// Waits until the condition holds: for what can be observed and announces itself nowhere. False when it never does.
template <class Condition>
[[nodiscard]] bool becomes_true(Condition&& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(patience_ms);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// The same, for what the test cannot go on without.
template <class Condition>
void wait_until(Condition&& condition)
{
    ASSERT_TRUE(becomes_true(condition)) << "waited in vain";
}

}  // namespace test_support
