// --version, and what says that a scanner is simulated.
#include "in_process.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Versions_test : public In_process_test {};

TEST_F(Versions_test, are_those_of_the_tool_and_of_the_dlls)
{
    EXPECT_THAT(run_in_process({"--version"}).out, AllOf(StartsWith("vyra " VYRA_VERSION_TEXT "\nvyrabrenvozulta"),
                                                         HasSubstr("\nBrenvoZulta_USB"), HasSubstr(", simulated  ")));
    const Json versions = Json::parse(run_in_process({"--json", "--version"}).out);
    EXPECT_EQ(versions["vyra"], VYRA_VERSION_TEXT);
    EXPECT_EQ(versions["BrenvoZulta_USB"]["simulated"], true);
    EXPECT_EQ(versions["vyrabrenvozulta"]["simulated"], false);
}

TEST_F(Versions_test, a_simulated_scanner_is_called_one)
{
    EXPECT_THAT(run_in_process({"list"}).out, EndsWith("  simulated\n"));
    EXPECT_THAT(run_in_process({"info"}).out, HasSubstr("driver          simulated\n"));
    EXPECT_EQ(Json::parse(run_in_process({"list", "--json"}).out)["scanners"][0]["simulated"], true);
    EXPECT_EQ(Json::parse(run_in_process({"info", "--json"}).out)["simulated"], true);
}

}  // namespace
}  // namespace tool_tests
