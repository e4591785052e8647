// Calls without memory as only the double's books show them: native builds alone.
#include "unit/api/allocation_test.h"
#include "win32_double/control.h"

namespace {

using allocation_tests::Allocation_test;
using allocation_tests::status_on_another_thread;

TEST_F(Allocation_test, TheFoldersNameIsGivenBackWhateverIsRefused)
{
    for (int n = 1; !HasFailure(); ++n) {
        start(3);
        win32_double::clear();
        failing_new::fail_allocation(n);
        EXPECT_EQ(VyraStopVideo(77), VYRA_BAD_SCANNER_IDX);
        const bool refused = failing_new::stop();
        const auto freed = win32_double::calls("CoTaskMemFree");
        EXPECT_TRUE(freed == win32_double::calls("SHGetKnownFolderPath") || (refused && n == 1)) << n;
        EXPECT_EQ(status_on_another_thread(), VYRA_OK);
        if (!refused) {
            EXPECT_GT(n, 1);
            break;
        }
    }
}

}  // namespace
