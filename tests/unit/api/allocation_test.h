// The stage of the tests without memory.
#pragma once

#include <functional>
#include <thread>

#include <gmock/gmock.h>

#include "support/failing_new.h"
#include "support/log_lines.h"
#include "unit/api/quiet_driver.h"
#include "vyra/vyra.h"

namespace allocation_tests {

// Terminates the library from a thread that holds none of its locks.
inline std::int32_t status_on_another_thread()
{
    std::int32_t status = -1;
    std::thread([&] { status = VyraTerminate(); }).join();
    return status;
}

class Allocation_test : public ::testing::Test {
protected:
    void SetUp() override { test_support::remove_logs(); }

    void TearDown() override
    {
        failing_new::stop();
        VyraInitialize_N(nullptr, 0, 0);
        VyraTerminate();
        test_support::remove_logs();
    }

    void start(std::uint32_t log_level = 0)
    {
        ASSERT_EQ(VyraInitialize_N([](std::int32_t, const char*, std::int32_t) { return 0; }, log_level, 0), VYRA_OK);
    }

    std::uint32_t open()
    {
        std::uint32_t handle = VYRA_NO_HANDLE;
        EXPECT_EQ(VyraOpenDevice(quiet_driver::first_scanner, &handle), VYRA_OK);
        return handle;
    }

    // Calls with the first, the second, ... allocation refused, each time from the prepared state, until a call needs
    // no more; then it has the usual status. Returns the number of allocations.
    static int refuse_each(const std::function<void()>& prepare, const std::function<std::int32_t()>& call,
                           std::int32_t usual = VYRA_OK)
    {
        for (int n = 1;; ++n) {
            prepare();
            failing_new::fail_allocation(n);
            std::int32_t status = -1;
            EXPECT_NO_THROW(status = call());
            if (!failing_new::stop()) {
                EXPECT_EQ(status, usual);
                EXPECT_EQ(status_on_another_thread(), VYRA_OK);
                return n - 1;
            }
            EXPECT_EQ(status, VYRA_OUT_OF_RESOURCE) << "allocation " << n;
            EXPECT_EQ(status_on_another_thread(), VYRA_OK) << "the locks are free, the library can be terminated";
            if (::testing::Test::HasFailure()) {
                return n - 1;
            }
        }
    }
};

}  // namespace allocation_tests
