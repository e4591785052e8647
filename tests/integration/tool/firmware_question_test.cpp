// Interrupts of a firmware update: at the question, with an input from which nothing comes, before the transfer, and in
// it.
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <future>

#include "in_process.h"
#include "interrupt.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

class Firmware_question_test : public In_process_test {};

TEST_F(Firmware_question_test, an_interrupt_at_the_question_ends_it_at_once)
{
    const std::string image = std::filesystem::temp_directory_path() / "vyra_firmware_image";
    write_bytes(image, {1, 2, 3});
    int silent[2];
    ASSERT_EQ(pipe(silent), 0);
    const int input = dup(STDIN_FILENO);
    dup2(silent[0], STDIN_FILENO);
    Background_run run({"firmware", image});
    ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_GetDeviceInfo", 1, test_support::patience_ms), 1);
    vyra_tool::request_interrupt();
    auto ended = std::async(std::launch::async, [&run] { return run.finish().code; });
    EXPECT_EQ(ended.wait_for(std::chrono::milliseconds(test_support::patience_ms)), std::future_status::ready);
    close(silent[1]);  // the input ends, and with it the thread that read
    EXPECT_EQ(ended.get(), 1);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_UpdateFirmware"), 0U);
    dup2(input, STDIN_FILENO);
    close(input);
    close(silent[0]);
    std::filesystem::remove(image);
}

TEST_F(Firmware_question_test, an_interrupt_before_the_transfer_ends_it_although_nothing_is_asked)
{
    const std::string image = std::filesystem::temp_directory_path() / "vyra_firmware_not_in_transfer";
    write_bytes(image, {1, 2, 3});
    ASSERT_EQ(brenvozulta_sim_block("QXDR_OpenDevice"), 1);
    Background_run run({"firmware", image, "--yes"});
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_OpenDevice", 1, test_support::patience_ms), 1);
    vyra_tool::request_interrupt();
    ASSERT_EQ(brenvozulta_sim_unblock("QXDR_OpenDevice"), 1);
    EXPECT_EQ(run.finish().code, 1);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_UpdateFirmware"), 0U);
    EXPECT_EQ(brenvozulta_sim_is_open(BRENVOZULTA_SIM_DEFAULT_SCANNER), 0);
    std::filesystem::remove(image);
}

TEST_F(Firmware_question_test, not_even_a_second_interrupt_ends_a_transfer)
{
    const std::string image = std::filesystem::temp_directory_path() / "vyra_firmware_in_transfer";
    write_bytes(image, {1, 2, 3});
    ASSERT_EQ(brenvozulta_sim_block("QXDR_UpdateFirmware"), 1);
    Background_run run({"firmware", image, "--yes"});
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_UpdateFirmware", 1, test_support::patience_ms), 1);
    vyra_tool::request_interrupt();
    EXPECT_FALSE(vyra_tool::may_end_at_once());
    ASSERT_EQ(brenvozulta_sim_unblock("QXDR_UpdateFirmware"), 1);
    run.finish();
    EXPECT_TRUE(vyra_tool::may_end_at_once()) << "when it is over, that has an effect again";
    std::filesystem::remove(image);
}

}  // namespace
}  // namespace tool_tests
