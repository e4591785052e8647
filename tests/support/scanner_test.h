// The stage of the tests that use the library with the simulated driver.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brenvozulta_simulator/control.h"
#include "support/log_lines.h"
#include "support/waiting.h"
#include "vyra/vyra.h"

namespace test_support {

constexpr std::uint32_t log_everything = 3;
constexpr std::int32_t default_limit = 0;

// Starts every test with the unconfigured simulator (one scanner attached), images on demand only, no log file and an
// uninitialized library; ends it terminated. Every message in the log must have been taken by then: an error line that
// no test expects is a failure.
class Scanner_test : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Initializes the library with everything logged, and drains a status change left by an earlier test.
    void initialize(VyraDeviceEventCallback callback = nullptr);

    // Opens the default scanner, or another.
    static std::uint32_t open(const std::string& name = BRENVOZULTA_SIM_DEFAULT_SCANNER);

    // The messages logged since the last call, which the test compares.
    [[nodiscard]] std::vector<std::string> take_log();

    // The driver calls recorded since the last call, as text: "QXDR_StartCapture".
    static std::vector<std::string> take_driver_calls();

private:
    std::size_t taken_ = 0;
};

}  // namespace test_support
