// What the tool says about itself, and how it answers wrong usage.
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const char* const commands[] = {"list",  "capture",  "info",        "leds",     "beep",
                                "param", "snapshot", "calibration", "firmware", "watch"};

class Usage_test : public Tool_test {
protected:
    // Runs the tool and expects that it refuses the arguments with a message that names what.
    void expect_wrong(const std::vector<std::string>& arguments, const std::vector<std::string>& message)
    {
        const Result result = run(arguments);
        EXPECT_EQ(result.code, 2) << result.err;
        EXPECT_THAT(result.out, IsEmpty());
        for (const std::string& part : message) {
            EXPECT_THAT(result.err, HasSubstr(part));
        }
    }
};

TEST_F(Usage_test, help_names_every_command_and_the_exit_codes)
{
    const Result result = run({"--help"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    for (const char* command : commands) {
        EXPECT_THAT(result.out, HasSubstr(std::string("\n  ") + command + " "));
    }
    EXPECT_THAT(result.out, AllOf(HasSubstr("First steps:"), HasSubstr("Exit codes:")));
}

TEST_F(Usage_test, help_of_every_command_teaches_by_examples)
{
    for (const char* command : commands) {
        const Result result = run({command, "--help"});
        EXPECT_EQ(result.code, 0) << command;
        EXPECT_THAT(result.out, AllOf(HasSubstr("Examples:\n  vyra " + std::string(command)), HasSubstr("--json"),
                                      HasSubstr("Exit codes: 0 success")));
    }
}

TEST_F(Usage_test, version_is_printed)
{
    const Result result = run({"--version"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("vyra 1."));
}

TEST_F(Usage_test, without_a_command_or_with_an_unknown_one_is_wrong)
{
    expect_wrong({}, {"name a command", "vyra --help"});
    expect_wrong({"scan"}, {"scan"});
    expect_wrong({"list", "--fast"}, {"--fast"});
    expect_wrong({"list", "--log", "loud"}, {"loud", "trace"});
}

TEST_F(Usage_test, impossible_captures_are_wrong)
{
    expect_wrong({"capture", "--frames", "-1", "--out", path("images")}, {"-1"});
    expect_wrong({"capture", "--frames", "many", "--out", path("images")}, {"many"});
    expect_wrong({"capture", "--timeout", "0", "--out", path("images")}, {"0"});
    expect_wrong({"capture", "--size", "1600", "--out", path("images")}, {"\"1600\" is no image size", "1600x1500"});
}

TEST_F(Usage_test, unknown_leds_are_answered_with_the_valid_ones)
{
    expect_wrong({"leds"}, {"name a group", "--off"});
    expect_wrong({"leds", "d", "1=lit1"},
                 {"no LED group \"d\"", "a (positions 1 to 4), b (positions 1 to 4) and c (positions 1 and 2)"});
    expect_wrong({"leds", "a", "5=lit1"}, {"no position \"5\"", "1 to 4"});
    expect_wrong({"leds", "c", "3=lit1"}, {"no position \"3\"", "1 to 2"});
    expect_wrong({"leds", "a", "0=lit1"}, {"no position \"0\""});
    expect_wrong({"leds", "a", "1=blue"}, {"no LED state \"blue\"", "off, lit1, lit2 and lit3"});
    expect_wrong({"leds", "a", "lit1"}, {"\"lit1\" does not read POSITION=STATE"});
    expect_wrong({"leds", "a", "--off"}, {"takes no group"});
}

TEST_F(Usage_test, an_unknown_tone_pattern_is_answered_with_the_valid_ones)
{
    expect_wrong({"beep"}, {"pattern is required"});
    for (const char* pattern : {"4", "loud", "-1", "00"}) {
        expect_wrong({"beep", "--", pattern}, {std::string("no tone pattern \"") + pattern + "\"", "0 or double",
                                               "1 or long", "2 or short", "3 or low"});
    }
}

TEST_F(Usage_test, an_image_file_says_its_form_by_its_end)
{
    expect_wrong({"calibration", "--out", "flat.jpg"}, {"\"flat.jpg\"", ".png", ".raw"});
    expect_wrong({"snapshot", "--out", "shot"}, {"\"shot\"", ".png", ".raw"});
    expect_wrong({"calibration"}, {"--out is required"});
    expect_wrong({"snapshot", "--out", path("a.png"), "--values", "1", "2"}, {"--values"});
    expect_wrong({"snapshot", "--out", path("a.png"), "--values", "1", "2", "-3"}, {"--values", "-3"});
}

TEST_F(Usage_test, usb_identifiers_are_two_hexadecimal_numbers)
{
    for (const char* pair : {"1A2B", "1A2B:", ":00FF", "1A2B:XYZ", "1A2B:10000", "0:0", "-1:5", "1A2B:00FF:1"}) {
        expect_wrong({"watch", std::string("--usb=") + pair}, {std::string("\"") + pair + "\" is no USB identifier"});
    }
    std::vector<std::string> ten{"watch"};
    for (int i = 1; i <= 10; ++i) {
        ten.insert(ten.end(), {"--usb", "1A2B:" + std::to_string(i)});
    }
    expect_wrong(ten, {"at most 9"});
}

}  // namespace
}  // namespace tool_tests
