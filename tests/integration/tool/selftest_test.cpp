// selftest, on a scanner that is well and in words.
#include <set>
#include <sstream>

#include "selftest_stage.h"

namespace tool_tests {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Selftest_test : public Selftest_stage {};

TEST_F(Selftest_test, a_scanner_that_is_well_passes_every_check)
{
    vyra_tool::Selftest_options options;
    options.write = true;
    const auto result = vyra_tool::run_selftest(options);
    EXPECT_THAT(explained(result.outcomes), IsEmpty());
    EXPECT_EQ(result.scanner, BRENVOZULTA_SIM_DEFAULT_SCANNER);
    for (const vyra_tool::Outcome& outcome : result.outcomes) {
        EXPECT_TRUE(outcome.verdict == vyra_tool::Verdict::passed || outcome.check.name == "image-size-roll")
            << outcome.check.name << ": " << outcome.how;
    }
    EXPECT_EQ(brenvozulta_sim_is_open(BRENVOZULTA_SIM_DEFAULT_SCANNER), 0);
}

TEST_F(Selftest_test, every_check_has_a_name_of_its_own_and_needs_earlier_ones)
{
    std::set<std::string> names;
    for (const vyra_tool::Check& check : vyra_tool::checks()) {
        for (const std::string& need : check.needs) {
            EXPECT_EQ(names.count(need), 1U) << check.name << " needs " << need;
        }
        EXPECT_TRUE(names.insert(check.name).second) << check.name;
        EXPECT_FALSE(check.shows.empty() || check.means.empty()) << check.name;
    }
    EXPECT_GE(names.size(), 40U);
}

TEST_F(Selftest_test, says_how_a_check_failed_and_changes_nothing_on_the_scanner)
{
    brenvozulta_sim_set_idle_stop_result(19);
    const Result text = run_in_process({"selftest"});
    EXPECT_EQ(text.code, 1);
    EXPECT_THAT(text.out,
                HasSubstr("\nFAILED  stop-idle: VyraStopVideo without video returns 0\n"
                          "        how: VyraStopVideo without video returned 9111 VYRA_DRIVER_STATE instead of "
                          "0 VYRA_OK\n"
                          "        for a host: hosts that stop once too often"));
    EXPECT_THAT(text.out, HasSubstr("\nok      open: VyraOpenDevice opens"));
    EXPECT_THAT(text.out, HasSubstr("\n-       reset: "));
    EXPECT_THAT(text.out, HasSubstr("1 failed"));
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_ResetDevice"), 0U);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_SetLeds"), brenvozulta_sim_times_called("QXDR_OpenDevice") - 1)
        << "those that opening switches off, but for the name that cannot be opened";
}

TEST_F(Selftest_test, as_json_one_object)
{
    ASSERT_EQ(brenvozulta_sim_fail("QXDR_GetDevicesList", 9, BRENVOZULTA_SIM_ALWAYS), 1);
    const Result result = run_in_process({"selftest", "--json"});
    EXPECT_EQ(result.code, 1);
    const Json object = Json::parse(result.out);
    EXPECT_EQ(object["failed"], 1);
    EXPECT_EQ(object["scanner"], nullptr);
    for (const Json& check : object["checks"]) {
        EXPECT_EQ(check["result"] == "failed", check["name"] == "initialize") << check;
        EXPECT_EQ(check.contains("how") && check.contains("means"), check["result"] == "failed") << check;
        EXPECT_EQ(check.contains("why"), check["result"] == "not made") << check;
    }
}

TEST_F(Selftest_test, a_scanner_that_is_not_there_has_its_own_exit_code)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"selftest", "--scanner", "Middle"}, {"selftest"}}) {
        const Result result = run_and_listen(arguments);
        EXPECT_EQ(result.code, 3);
        EXPECT_THAT(result.out, HasSubstr("\nFAILED  list: "));
        EXPECT_THAT(result.err, HasSubstr("1 of "));
        brenvozulta_sim_remove_all();
    }
}

TEST_F(Selftest_test, names_the_place_of_the_log)
{
    brenvozulta_sim_set_idle_stop_result(19);
    EXPECT_THAT(run_and_listen({"selftest"}).err, HasSubstr("vyrabrenvozulta.log"));
}

TEST_F(Selftest_test, list_makes_no_check)
{
    const Result result = run_in_process({"selftest", "--list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out,
                HasSubstr("reset: VyraBusReset_N restarts the scanner within 2 seconds (only with --write)\n"));
    EXPECT_EQ(brenvozulta_sim_call_count(), 0U);
}

}  // namespace
}  // namespace tool_tests
