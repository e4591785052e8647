#include "support/scanner_test.h"

#include "support/driver_calls.h"

namespace test_support {

void Scanner_test::SetUp()
{
    brenvozulta_sim_reset();
    brenvozulta_sim_set_frame_rate(0);
    remove_logs();
    taken_ = 0;
}

void Scanner_test::TearDown()
{
    EXPECT_THAT(take_log(), ::testing::IsEmpty()) << "lines in the log that the test did not expect";
    brenvozulta_sim_reset();
    VyraInitialize_N(nullptr, 0, default_limit);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    brenvozulta_sim_reset();
    remove_logs();
}

void Scanner_test::initialize(VyraDeviceEventCallback callback)
{
    ASSERT_EQ(VyraInitialize_N(callback, log_everything, default_limit), VYRA_OK);
}

std::uint32_t Scanner_test::open(const std::string& name)
{
    std::uint32_t handle = VYRA_NO_HANDLE;
    EXPECT_EQ(VyraOpenDevice(name.c_str(), &handle), VYRA_OK);
    return handle;
}

std::vector<std::string> Scanner_test::take_log()
{
    const auto messages = log_messages(taken_);
    taken_ += messages.size();
    return messages;
}

std::vector<std::string> Scanner_test::take_driver_calls()
{
    auto calls = call_names();
    brenvozulta_sim_clear_calls();
    return calls;
}

}  // namespace test_support
