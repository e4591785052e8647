// The number of extraction threads, as the operating system counts them.
#include <filesystem>
#include <iterator>
#include <utility>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;

std::ptrdiff_t threads()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

class Extraction_threads_test : public Device_test {
protected:
    // Opens the device and notes what runs without video. The driver pretends its captures: it starts no thread.
    void open_and_count()
    {
        open_device();
        brenvozulta_sim_fail("QXDR_StartCapture", driver_ok, BRENVOZULTA_SIM_ALWAYS);
        brenvozulta_sim_fail("QXDR_StopCapture", driver_ok, BRENVOZULTA_SIM_ALWAYS);
        // Threads that the driver has let go of in earlier tests may still be on their way out.
        EXPECT_EQ(brenvozulta_sim_wait_acquisition_threads(0, patience_ms), 1);
        EXPECT_TRUE(becomes_true([this] {
            const std::ptrdiff_t earlier = std::exchange(before_, threads());
            return earlier == before_;
        }));
    }

    bool come_to(std::ptrdiff_t count)
    {
        return becomes_true([&] { return threads() - before_ == count; });
    }

    std::ptrdiff_t before_ = 0;
};

TEST_F(Extraction_threads_test, each_start_adds_one_and_a_stop_ends_at_least_one)
{
    open_and_count();
    ASSERT_EQ(device().start_camera(), 0);
    EXPECT_TRUE(come_to(1));
    ASSERT_EQ(device().start_camera(), 0);
    EXPECT_TRUE(come_to(2));
    ASSERT_EQ(device().stop_video(), 0);
    EXPECT_TRUE(becomes_true([&] { return threads() - before_ <= 1; }));
    drop_device();
    EXPECT_TRUE(come_to(0));
    // Whether the second thread found the stop answered is a matter of time.
    EXPECT_THAT(take_log(), ::testing::Each(already_answered_line()));
}

TEST_F(Extraction_threads_test, a_stop_ends_the_only_one)
{
    open_and_count();
    ASSERT_EQ(device().start_camera(), 0);
    ASSERT_EQ(device().stop_video(), 0);
    EXPECT_TRUE(come_to(0));
}

TEST_F(Extraction_threads_test, a_suspend_ends_the_only_one)
{
    open_and_count();
    ASSERT_EQ(device().start_camera(), 0);
    device().request_stop();
    EXPECT_TRUE(come_to(0));
}

TEST_F(Extraction_threads_test, they_end_with_their_device)
{
    open_and_count();
    ASSERT_EQ(device().start_camera(), 0);
    ASSERT_EQ(device().start_camera(), 0);
    EXPECT_TRUE(come_to(2));
    drop_device();
    EXPECT_TRUE(come_to(0));
}

TEST_F(Extraction_threads_test, they_end_when_their_device_is_opened_again)
{
    open_and_count();
    ASSERT_EQ(device().start_camera(), 0);
    ASSERT_EQ(device().open(first_scanner, 0), 0);
    EXPECT_TRUE(come_to(0));
}

TEST_F(Extraction_threads_test, they_outlive_a_close_and_end_with_the_device)
{
    open_and_count();
    ASSERT_EQ(device().start_camera(), 0);
    ASSERT_EQ(device().close(), 0);
    EXPECT_TRUE(come_to(1));
    drop_device();
    EXPECT_TRUE(come_to(0));
}

}  // namespace
