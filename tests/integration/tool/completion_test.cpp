// completion.
#include <algorithm>
#include <map>
#include <regex>

#include "in_process.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Completion_test : public In_process_test {};

TEST_F(Completion_test, knows_every_command_and_its_options)
{
    for (const char* shell : {"bash", "powershell"}) {
        const Result result = run_in_process({"completion", shell});
        EXPECT_EQ(result.code, 0);
        EXPECT_THAT(result.out,
                    AllOf(HasSubstr("help list capture info"), HasSubstr("--scanner --roll --frames --out")));
    }
    EXPECT_EQ(run_and_listen({"completion", "fish"}).code, 2);
}

// The words behind each command, by what the script puts before and behind them.
std::map<std::string, std::string> words_by_command(const std::string& script, const std::string& expression)
{
    std::map<std::string, std::string> words;
    const std::regex row(expression);
    for (std::sregex_iterator at(script.begin(), script.end(), row), end; at != end; ++at) {
        words[(*at)[1]] = (*at)[2];
    }
    return words;
}

TEST_F(Completion_test, says_the_same_in_both_shells)
{
    const std::string bash = run_in_process({"completion", "bash"}).out;
    const std::string powershell = run_in_process({"completion", "powershell"}).out;
    const auto expected = words_by_command(bash, "\n +([a-z]+)\\) words=\"([^\"]*)\"; break ;;");
    EXPECT_GE(expected.size(), 17U);
    EXPECT_EQ(words_by_command(powershell, "\n +'([a-z]+)' \\{ \\$words = '([^']*)' \\}"), expected);
}

TEST_F(Completion_test, the_powershell_script_is_ascii_and_well_formed)
{
    const std::string script = run_in_process({"completion", "powershell"}).out;
    EXPECT_TRUE(std::all_of(script.begin(), script.end(), [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); }));
    EXPECT_THAT(script, StartsWith("Register-ArgumentCompleter -Native -CommandName vyra, vyra.exe -ScriptBlock {\n"));
    EXPECT_THAT(script, EndsWith("\n}\n"));
    std::string open;  // brackets, and the quote that stands for all until its like
    for (const char c : script) {
        if (!open.empty() && (open.back() == '\'' || open.back() == '"')) {
            if (c == open.back()) {
                open.pop_back();
            }
        } else if (c == '{' || c == '(' || c == '[' || c == '\'' || c == '"') {
            open += c;
        } else if (c == '}' || c == ')' || c == ']') {
            ASSERT_FALSE(open.empty());
            EXPECT_EQ(open.back(), c == '}' ? '{' : c == ')' ? '(' : '[');
            open.pop_back();
        }
    }
    EXPECT_EQ(open, "");
}

#ifndef _WIN32
TEST_F(Completion_test, completes_in_bash)
{
    const std::string script = run_in_process({"completion", "bash"}).out;
    const auto completed = [&script](const std::string& words, int word) {
        const std::string call = script + "COMP_WORDS=(" + words + "); COMP_CWORD=" + std::to_string(word) +
                                 "; _vyra; echo \"${COMPREPLY[*]}\"";
        return test_support::run_program({"/bin/bash", "-c", call}).out;
    };
    EXPECT_EQ(completed("vyra ca", 1), "capture calibration\n");
    EXPECT_EQ(completed("vyra capture --fr", 2), "--frames\n");
    EXPECT_EQ(completed("vyra --json capture --ro", 3), "--roll\n");
}
#endif

}  // namespace
}  // namespace tool_tests
