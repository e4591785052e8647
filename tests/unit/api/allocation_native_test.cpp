// Calls without memory as only the double's books show them: native builds alone.
#include "log/log_file.h"
#include "unit/api/allocation_test.h"
#include "win32_double/control.h"

namespace {

using allocation_tests::Allocation_test;

// The first allocations are the double's own, of a folder that it then does not give.
TEST_F(Allocation_test, the_folders_name_is_given_back_whatever_is_refused)
{
    bool was_given = false;
    int refused_since = 0;
    for (int n = 1;; ++n) {
        win32_double::clear();
        failing_new::fail_allocation(n);
        try {
            kvs::brenvozulta::log_directory();
        } catch (const std::bad_alloc&) {
        }
        const bool refused = failing_new::stop();
        const bool freed = win32_double::calls("CoTaskMemFree") == 1;
        EXPECT_TRUE(freed || !was_given) << "allocation " << n;
        was_given = was_given || freed;
        if (!refused) {
            break;
        }
        refused_since += freed ? 1 : 0;
    }
    EXPECT_TRUE(was_given);
    EXPECT_GT(refused_since, 0);
}

}  // namespace
