// Restarts that take longer than the library waits.
#include "firmware.h"
#include "in_process.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

class Slow_restart_test : public In_process_test {};

TEST_F(Slow_restart_test, a_scanner_that_does_not_restart_is_a_failure)
{
    const brenvozulta_sim_fault ignored{0, 0, BRENVOZULTA_SIM_ALWAYS, 0};
    ASSERT_EQ(brenvozulta_sim_set_fault("QXDR_ResetDevice", &ignored), 1);
    EXPECT_EQ(run_in_process({"reset"}).code, 4);
}

TEST_F(Slow_restart_test, a_scanner_that_takes_longer_than_the_library_waits_is_waited_for)
{
    const brenvozulta_sim_restart slow{2300, 1, 1};
    ASSERT_EQ(brenvozulta_sim_set_restart(&slow), 1);
    const Result result = run_in_process({"reset", "--json"});
    EXPECT_EQ(result.code, 0);
    EXPECT_GE(Json::parse(result.out)["milliseconds"], 2300);
}

TEST_F(Slow_restart_test, after_firmware_a_scanner_that_leaves_late_is_waited_for)
{
    const brenvozulta_sim_fault ignored{0, 0, BRENVOZULTA_SIM_ALWAYS, 0};
    ASSERT_EQ(brenvozulta_sim_set_fault("QXDR_ResetDevice", &ignored), 1);
    ASSERT_EQ(brenvozulta_sim_add_timeline(2500, "QXDR_ResetDevice", 1, 0, BRENVOZULTA_SIM_DEFAULT_SCANNER), 1);
    ASSERT_EQ(brenvozulta_sim_add_timeline(2600, "QXDR_ResetDevice", 1, 1, BRENVOZULTA_SIM_DEFAULT_SCANNER), 1);
    const vyra_tool::Library library(VYRA_LOG_OFF);
    vyra_tool::Scanner scanner(library, BRENVOZULTA_SIM_DEFAULT_SCANNER);
    const vyra_tool::Restarted restarted = vyra_tool::update_firmware(scanner, {1, 2, 3});
    EXPECT_TRUE(restarted.proven);
    EXPECT_STREQ(restarted.info.version, "2.6.b");
}

}  // namespace
}  // namespace tool_tests
