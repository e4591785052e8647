// firmware.
#include "firmware.h"

#include <chrono>

#include "failure.h"
#include "in_process.h"
#include "output.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class Firmware_test : public Tool_test {
protected:
    Firmware_test() { write_bytes(path("image"), {'R', 'Q', '7', 'F', 'W', 3, 1, 'c', 0, 0}); }

    std::string version() { return object_of(run({"info", "--json"}))["version"]; }
};

TEST_F(Firmware_test, the_new_version_is_reported_once_the_scanner_is_back)
{
    const Result result = run({"firmware", path("image"), "--yes"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.out, "\"RQ7-3050 #1\" had version 2.5.b and now reports 3.1.c\n");
    EXPECT_THAT(result.err, AllOf(HasSubstr("loading 10 bytes of firmware"), Not(HasSubstr("[y/N]"))));
}

TEST_F(Firmware_test, as_json)
{
    EXPECT_EQ(
        object_of(run({"firmware", path("image"), "--yes", "--json"})),
        (Json{{"scanner", "RQ7-3050 #1"}, {"version_before", "2.5.b"}, {"version", "3.1.c"}, {"restarted", true}}));
}

TEST_F(Firmware_test, a_scanner_that_restarts_unnoticed_is_reported_as_well)
{
    use_scenario({{"restart", {{"announce_unplug", false}}}});
    EXPECT_EQ(object_of(run({"firmware", path("image"), "--yes", "--json"}))["version"], "3.1.c");
}

TEST_F(Firmware_test, asks_first_and_takes_only_a_yes)
{
    for (const char* answer : {"n\n", "\n", "", "maybe\n"}) {
        const Result result = run({"firmware", path("image")}, answer);
        EXPECT_EQ(result.code, 1) << answer;
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, AllOf(HasSubstr("into \"RQ7-3050 #1\", which has version 2.5.b? [y/N]"),
                                      HasSubstr("not confirmed: no firmware was loaded"), Not(HasSubstr("loading"))));
    }
    const Result result = run({"firmware", path("image")}, "y\n");
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("now reports 3.1.c"));
}

TEST_F(Firmware_test, missing_and_empty_files_are_refused)
{
    write_bytes(path("empty"), {});
    const Result missing = run({"firmware", path("missing"), "--yes"});
    EXPECT_EQ(missing.code, 5);
    EXPECT_THAT(missing.err, HasSubstr("cannot open the file \"" + path("missing") + "\""));
    const Result empty = run({"firmware", path("empty"), "--yes"});
    EXPECT_EQ(empty.code, 1);
    EXPECT_THAT(empty.err, AllOf(HasSubstr("\"" + path("empty") + "\" is empty"), Not(HasSubstr("loading"))));
    EXPECT_THAT(run({"firmware", path(""), "--yes"}).err, HasSubstr("is a directory"));
    EXPECT_THAT(run({"firmware", "/no/such/file", "--yes"}).err, HasSubstr("cannot open the file \"/no/such/file\""));
}

TEST_F(Firmware_test, a_transfer_that_breaks_off_is_a_failure)
{
    use_scenario({{"firmware", {{"fail_at_byte", 4}, {"fail_result", 9}}}});
    const Result result = run({"firmware", path("image"), "--yes"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr("cannot load the firmware into \"RQ7-3050 #1\": 9016 VYRA_DEVICE_TIMEOUT"),
                                  HasSubstr("try: plug the scanner out and in")));
}

TEST_F(Firmware_test, a_refused_restart_is_a_failure)
{
    use_scenario({{"firmware", {{"reset_result", 2}}}});
    const Result result = run({"firmware", path("image"), "--yes"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("9025 VYRA_DRIVER_REFUSED"));
}

class Firmware_in_process_test : public In_process_test {};

TEST_F(Firmware_in_process_test, is_refused_while_video_runs)
{
    const vyra_tool::Library library(VYRA_LOG_OFF);
    vyra_tool::Scanner scanner(library, BRENVOZULTA_SIM_DEFAULT_SCANNER);
    EXPECT_FALSE(scanner.streams());
    vyra_tool::Video video(scanner, 1);
    EXPECT_TRUE(scanner.streams());
    EXPECT_THROW(vyra_tool::update_firmware(scanner, {1, 2, 3}), vyra_tool::Failure);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_UpdateFirmware"), 0U);
    video.stop();
    EXPECT_FALSE(scanner.streams());
    EXPECT_STREQ(vyra_tool::update_firmware(scanner, {1, 2, 3}).info.version, "2.6.b");
}

// A driver that takes the order to restart and does nothing, or not yet.
void ignore_reset()
{
    const brenvozulta_sim_fault ignored{0, 0, BRENVOZULTA_SIM_ALWAYS, 0};
    ASSERT_EQ(brenvozulta_sim_set_fault("QXDR_ResetDevice", &ignored), 1);
}

TEST_F(Firmware_in_process_test, an_unchanged_version_without_a_return_is_no_restart)
{
    ignore_reset();
    const vyra_tool::Library library(VYRA_LOG_OFF);
    vyra_tool::Scanner scanner(library, BRENVOZULTA_SIM_DEFAULT_SCANNER);
    const vyra_tool::Restart_patience short_patience{std::chrono::milliseconds(30), std::chrono::milliseconds(100)};
    const vyra_tool::Restarted restarted = vyra_tool::update_firmware(scanner, {1, 2, 3}, short_patience);
    EXPECT_FALSE(restarted.proven);
    EXPECT_STREQ(restarted.info.version, "2.5.b");
}

TEST_F(Firmware_in_process_test, no_restart_is_no_success)
{
    const vyra_tool::Library library(VYRA_LOG_OFF);
    const vyra_tool::Scanner scanner(library, BRENVOZULTA_SIM_DEFAULT_SCANNER);
    std::FILE* const results = std::tmpfile();
    ASSERT_NE(results, nullptr);
    vyra_tool::Output output(results, true);
    EXPECT_NO_THROW(vyra_tool::report_update(scanner, "2.4.b", {scanner.info(), true}, output));
    std::rewind(results);
    try {
        vyra_tool::report_update(scanner, "2.5.b", {scanner.info(), false}, output);
        ADD_FAILURE() << "it did not restart";
    } catch (const vyra_tool::Failure& failure) {
        EXPECT_EQ(failure.cause(), vyra_tool::Cause::scanner_or_library);
        EXPECT_THAT(failure.what(), HasSubstr("did not restart"));
    }
    std::rewind(results);
    char line[512] = "";
    ASSERT_NE(std::fgets(line, sizeof line, results), nullptr);
    EXPECT_EQ(Json::parse(line)["restarted"], false);
    std::fclose(results);
}

}  // namespace
}  // namespace tool_tests
