// Fails every test in which the library, or the test, gave the system a handle that was closed before or never open.
#include <gtest/gtest.h>

#include "win32_double/control.h"

namespace test_support {
namespace {

class Handle_watch : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo& /*test*/) override { before_ = win32_double::stale_handles(); }
    void OnTestEnd(const testing::TestInfo& /*test*/) override
    {
        EXPECT_EQ(win32_double::stale_handles(), before_) << "a handle was used that was not open";
    }

private:
    uint64_t before_ = 0;
};

[[maybe_unused]] const bool watched = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new Handle_watch);
    return true;
}();

}  // namespace
}  // namespace test_support
