// reset.
#include "in_process.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::HasSubstr;

class Reset_test : public In_process_test {};

TEST_F(Reset_test, restarts_the_scanner_and_says_what_it_reports)
{
    const Result result = run_in_process({"reset", "--json"});
    EXPECT_EQ(result.code, 0);
    const Json object = Json::parse(result.out);
    EXPECT_EQ(object["scanner"], BRENVOZULTA_SIM_DEFAULT_SCANNER);
    EXPECT_EQ(object["version"], "2.5.b");
    EXPECT_GE(object["milliseconds"], 50);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_ResetDevice"), 1U);
    EXPECT_THAT(run_in_process({"reset"}).out, HasSubstr("\"RQ7-3050 #1\" has restarted in "));
}

TEST_F(Reset_test, a_refusal_is_a_failure_at_once)
{
    ASSERT_EQ(brenvozulta_sim_fail("QXDR_ResetDevice", 2, 1), 1);
    EXPECT_EQ(run_in_process({"reset"}).code, 1);
}

}  // namespace
}  // namespace tool_tests
