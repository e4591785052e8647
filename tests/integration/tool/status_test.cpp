// status.
#include "in_process.h"
#include "interrupt.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

class Status_test : public In_process_test {
protected:
    // What happens from then on is kept for the tool's wait.
    static void wait_until_open()
    {
        ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_SetLeds", 1, test_support::patience_ms), 1);
    }
};

TEST_F(Status_test, says_that_the_scanner_is_gone)
{
    Background_run run({"status", "--json"});
    wait_until_open();
    ASSERT_EQ(brenvozulta_sim_unplug(BRENVOZULTA_SIM_DEFAULT_SCANNER), 1);
    const Result result = run.finish();
    EXPECT_EQ(result.code, 4);
    EXPECT_EQ(Json::parse(result.out)["code"], 9005);
}

TEST_F(Status_test, without_a_change_the_time_is_over)
{
    const Result result = run_in_process({"status", "--timeout", "0.05", "--json"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(Json::parse(result.out), (Json{{"scanner", BRENVOZULTA_SIM_DEFAULT_SCANNER}, {"changed", false}}));
}

TEST_F(Status_test, ends_with_an_interrupt_and_closes_the_scanner)
{
    Background_run run({"status"});
    wait_until_open();
    vyra_tool::request_interrupt();
    EXPECT_EQ(run.finish().code, 1);
    EXPECT_EQ(brenvozulta_sim_is_open(BRENVOZULTA_SIM_DEFAULT_SCANNER), 0);
}

}  // namespace
}  // namespace tool_tests
