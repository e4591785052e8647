#include "support/scanner_test.h"

#include "support/log_lines.h"

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
    std::vector<std::string> calls;
    brenvozulta_sim_call call = {};
    for (std::size_t i = 0; i < brenvozulta_sim_call_count(); ++i) {
        if (brenvozulta_sim_get_call(i, &call) != 0) {
            calls.emplace_back(call.function);
        }
    }
    brenvozulta_sim_clear_calls();
    return calls;
}

std::string error_line(const std::string& operation, std::int32_t status, const std::string& text)
{
    return operation + ":    Error=" + std::to_string(status) + ": " + text + "\r\n";
}

}  // namespace test_support
