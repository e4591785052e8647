// Calls without memory that reach the system's functions. On Windows alone: natively the functions' doubles allocate
// as well.
#include "unit/api/allocation_test.h"

namespace {

using allocation_tests::Allocation_test;
using allocation_tests::status_on_another_thread;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A termination on the way that fails is not the initialization's failure.
TEST_F(Allocation_test, second_initialize)
{
    for (int n = 1; !HasFailure(); ++n) {
        start();
        open();
        failing_new::fail_allocation(n);
        std::int32_t status = -1;
        EXPECT_NO_THROW(status = VyraInitialize_N(nullptr, 0, 0));
        const bool refused = failing_new::stop();
        EXPECT_TRUE(status == VYRA_OK || (refused && status == VYRA_OUT_OF_RESOURCE)) << status;
        EXPECT_EQ(status_on_another_thread(), VYRA_OK);
        if (!refused) {
            break;
        }
    }
}

// Right after the start the stop may have to wait for the notifier's window, which takes memory.
TEST_F(Allocation_test, terminate_can_be_repeated)
{
    for (int n = 1; !HasFailure(); ++n) {
        start();
        open();
        failing_new::fail_allocation(n);
        std::int32_t status = -1;
        EXPECT_NO_THROW(status = VyraTerminate());
        const bool refused = failing_new::stop();
        if (!refused) {
            EXPECT_EQ(status, VYRA_OK);
            break;
        }
        EXPECT_EQ(status, VYRA_OUT_OF_RESOURCE);
        EXPECT_EQ(status_on_another_thread(), VYRA_OK);
    }
}

TEST_F(Allocation_test, refused_allocation_is_logged)
{
    start(3);
    const std::uint32_t handle = open();
    ASSERT_THAT(test_support::log_messages(), IsEmpty());
    failing_new::fail_allocation(1);
    EXPECT_EQ(VyraBrenvoStartVideo(handle, 1, 0), VYRA_OUT_OF_RESOURCE);
    failing_new::stop();
    EXPECT_THAT(test_support::log_messages(), ElementsAre("Exception : std::bad_alloc\r\n"));
}

// The log itself allocates when it opens its file: the line is then dropped, and the host sees the usual status.
TEST_F(Allocation_test, log_line_that_cannot_be_written_for_want_of_memory_is_dropped)
{
    int refused = 0;
    for (int n = 1; !HasFailure(); ++n) {
        start(3);
        failing_new::fail_allocation(n);
        std::int32_t status = -1;
        EXPECT_NO_THROW(status = VyraStopVideo(77));
        const bool stopped = failing_new::stop();
        EXPECT_EQ(status, VYRA_BAD_SCANNER_IDX);
        EXPECT_EQ(status_on_another_thread(), VYRA_OK);
        if (!stopped) {
            break;
        }
        ++refused;
    }
    EXPECT_GT(refused, 0);
    EXPECT_FALSE(test_support::file_bytes(test_support::log_path()).empty());
}

}  // namespace
