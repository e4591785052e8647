// doctor.
#include <cstdlib>
#include <map>

#include "in_process.h"
#include "support/broadcasts.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Doctor_test : public In_process_test {
protected:
    // What doctor found, by subject; code is the exit code.
    static std::map<std::string, Json> examine(int code)
    {
        const Result result = run_and_listen({"doctor", "--json"});
        EXPECT_EQ(result.code, code) << result.out;
        const Json report = Json::parse(result.out);
        EXPECT_EQ(report["ok"], code == 0);
        std::map<std::string, Json> findings;
        for (const Json& finding : report["findings"]) {
            findings[finding["subject"]] = finding;
        }
        return findings;
    }
};

TEST_F(Doctor_test, finds_everything_in_order_and_says_with_what)
{
    auto findings = examine(0);
    for (const char* subject : {"library", "driver", "log", "session", "scanner", "video", "power"}) {
        ASSERT_EQ(findings.count(subject), 1U) << subject;
        EXPECT_EQ(findings[subject]["ok"], true) << findings[subject];
    }
    EXPECT_THAT(findings["library"]["file"], HasSubstr("vyrabrenvozulta"));
    EXPECT_THAT(findings["driver"]["file"], HasSubstr("BrenvoZulta_USB"));
    EXPECT_EQ(findings["driver"]["simulated"], true);
    EXPECT_THAT(findings["log"]["path"], EndsWith("vyrabrenvozulta.log"));
    EXPECT_EQ(findings["scanner"]["name"], BRENVOZULTA_SIM_DEFAULT_SCANNER);
    EXPECT_EQ(findings["scanner"]["version"], "2.5.b");
    EXPECT_EQ(findings["power"]["asleep"], false);
#ifdef _WIN32
    EXPECT_EQ(findings["library"]["version"], VYRA_VERSION_TEXT);
    EXPECT_EQ(findings["driver"]["version"], VYRA_VERSION_TEXT);
#endif
}

TEST_F(Doctor_test, tries_a_start_of_video_and_stops_and_closes_again)
{
    examine(0);
    const auto calls = take_driver_calls();
    const auto start = std::find(calls.begin(), calls.end(), "QXDR_StartCapture");
    ASSERT_NE(start, calls.end());
    EXPECT_EQ(std::vector<std::string>(start, calls.end()),
              (std::vector<std::string>{"QXDR_StartCapture", "QXDR_StopCapture", "QXDR_CloseDevice",
                                        "QXDR_GetDeviceInfoSN", "QXDR_Release"}));
}

TEST_F(Doctor_test, names_a_scanner_that_is_missing)
{
    brenvozulta_sim_remove_all();
    auto findings = examine(3);
    EXPECT_EQ(findings["scanners"]["ok"], false);
    EXPECT_EQ(findings["scanners"]["cause"], "no_such_scanner");
    EXPECT_THAT(findings["scanners"]["try"], HasSubstr("attach a scanner"));
    EXPECT_EQ(findings["power"]["ok"], true);
}

TEST_F(Doctor_test, says_what_a_start_of_video_answered)
{
    ASSERT_EQ(brenvozulta_sim_fail("QXDR_StartCapture", 19, 1), 1);
    auto findings = examine(1);
    EXPECT_EQ(findings["scanner"]["ok"], true);
    EXPECT_EQ(findings["video"]["code"], VYRA_DRIVER_STATE);
    EXPECT_EQ(findings["video"]["exit_code"], 1);
}

TEST_F(Doctor_test, says_that_the_driver_does_not_come_up)
{
    ASSERT_EQ(brenvozulta_sim_fail("QXDR_Initialize", 9, 1), 1);
    auto findings = examine(1);
    EXPECT_EQ(findings["driver"]["ok"], true);
    EXPECT_EQ(findings["session"]["ok"], false);
    EXPECT_THAT(findings["session"]["text"], StartsWith("cannot initialize the library: "));
}

// The library of this process, put to sleep for the commands that follow.
class Asleep {
public:
    Asleep()
    {
        EXPECT_EQ(VyraInitialize_N(nullptr, 0, 0), VYRA_OK);
        EXPECT_NE(test_support::wait_for_window(), nullptr);
        test_support::send_power_event(PBT_APMSUSPEND);
    }
    ~Asleep()
    {
        EXPECT_EQ(VyraInitialize_N(nullptr, 0, 0), VYRA_OK);  // nobody else hears of the resume
        EXPECT_NE(test_support::wait_for_window(), nullptr);
        test_support::send_power_event(PBT_APMRESUMESUSPEND);
    }
    Asleep(const Asleep&) = delete;
    Asleep& operator=(const Asleep&) = delete;
};

TEST_F(Doctor_test, says_that_the_computer_counts_as_asleep)
{
    const Asleep asleep;
    auto findings = examine(1);
    EXPECT_EQ(findings["power"]["ok"], false);
    EXPECT_EQ(findings["power"]["asleep"], true);
    EXPECT_EQ(findings["power"]["exit_code"], 1);
    EXPECT_THAT(findings["power"]["try"], HasSubstr("keyboard or mouse"));
}

TEST_F(Doctor_test, other_commands_too_call_a_sleep_a_sleep)
{
    const Asleep asleep;
    const Result result = run_and_listen({"info"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("the computer went to sleep: 9110"), HasSubstr("try: wake the computer")));
}

#ifndef _WIN32
TEST_F(Doctor_test, says_that_the_log_cannot_be_written)
{
    const std::string file = ::testing::TempDir() + "vyra_no_folder";
    write_bytes(file, {1});
    const char* const before = std::getenv("ProgramData");
    const std::string kept = before != nullptr ? before : "";
    ASSERT_EQ(setenv("ProgramData", (file + "/data").c_str(), 1), 0);
    auto findings = examine(5);
    EXPECT_EQ(findings["log"]["ok"], false);
    EXPECT_EQ(findings["log"]["writable"], false);
    EXPECT_EQ(findings["log"]["exit_code"], 5);
    EXPECT_THAT(findings["log"]["try"], HasSubstr("the right to write into its folder"));
    before != nullptr ? setenv("ProgramData", kept.c_str(), 1) : unsetenv("ProgramData");
    std::remove(file.c_str());
}
#endif

TEST_F(Doctor_test, as_text_says_what_is_wrong_and_what_to_do)
{
    brenvozulta_sim_remove_all();
    const Result result = run_and_listen({"doctor"});
    EXPECT_EQ(result.code, 3);
    EXPECT_THAT(result.out, AllOf(HasSubstr("driver    ok     "), HasSubstr("simulated: it drives no scanner"),
                                  HasSubstr("\nscanners  WRONG  no scanner found: 9000 VYRA_INTERNAL"),
                                  HasSubstr("\n                 try: attach a scanner")));
    EXPECT_THAT(result.err, HasSubstr("vyra: not all is well: no scanner found"));
}

}  // namespace
}  // namespace tool_tests
