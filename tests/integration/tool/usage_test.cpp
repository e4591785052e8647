// What the tool says about itself, and how it answers wrong usage.
#include "in_process.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const char* const commands[] = {"help",  "list",     "capture",     "info",      "leds",  "beep",
                                "param", "snapshot", "calibration", "firmware",  "reset", "status",
                                "watch", "log",      "doctor",      "completion"};

// In this process: nothing here gets as far as the library.
class Usage_test : public Tool_test {
protected:
    static Result run(const std::vector<std::string>& arguments) { return run_and_listen(arguments); }

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
    for (const std::string command : commands) {
        if (command == "help") {
            continue;
        }
        const Result result = run({command, "--help"});
        EXPECT_EQ(result.code, 0) << command;
        EXPECT_EQ(result.out, run({"help", command}).out);
        EXPECT_THAT(result.out, AllOf(HasSubstr("Examples:\n  vyra " + command), HasSubstr("--json"),
                                      HasSubstr("Exit codes: 0 done")));
    }
}

TEST_F(Usage_test, version_is_printed)
{
    const Result result = run({"--version"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("vyra 1."));
}

TEST_F(Usage_test, help_explains_one_command_or_all_of_them)
{
    EXPECT_EQ(run({"help"}).out, run({"--help"}).out);
    EXPECT_THAT(run({"help", "capture"}).out, HasSubstr("Usage: vyra capture"));
    expect_wrong({"help", "captrue"}, {"there is no command \"captrue\", perhaps you mean capture"});
}

TEST_F(Usage_test, help_names_every_exit_code)
{
    for (const char* line :
         {"\n  0  done", "\n  1  the scanner or the library failed", "\n  2  wrong usage", "\n  3  no such scanner",
          "\n  4  the scanner went away", "\n  5  a file", "\n  6  a DLL"}) {
        EXPECT_THAT(run({"help"}).out, HasSubstr(line));
    }
}

TEST_F(Usage_test, a_command_that_is_not_there_is_answered_with_those_that_are)
{
    expect_wrong({}, {"name a command", "vyra --help"});
    expect_wrong({"lits"},
                 {"there is no command \"lits\", perhaps you mean list\n      try: one of help, list, capture,"});
    expect_wrong({"snapshoot"}, {"perhaps you mean snapshot"});
    const Result far_off = run({"xyzzy"});
    EXPECT_THAT(far_off.err, AllOf(HasSubstr("there is no command \"xyzzy\"\n"), Not(HasSubstr("perhaps"))));
    expect_wrong({"lits", "--json"}, {"there is no command"});
}

TEST_F(Usage_test, unknown_arguments_are_named_in_their_order_with_what_was_meant)
{
    expect_wrong({"list", "--fast"}, {"list does not understand \"--fast\"\n      try: vyra help list"});
    expect_wrong({"list", "one", "--two", "three"}, {"list does not understand \"one\", \"--two\", \"three\""});
    expect_wrong({"capture", "--fraems", "3"}, {"does not understand \"--fraems\", \"3\", perhaps you mean --frames"});
    expect_wrong({"--fast", "list"}, {"not understood: \"--fast\""});
    expect_wrong({"scan", "list"}, {"there is no command \"scan\""});
    expect_wrong({"list", "--log", "loud"}, {"--log: \"loud\" is not off, trace or all"});
}

TEST_F(Usage_test, a_value_that_is_missing_or_empty_is_asked_for)
{
    expect_wrong({"capture", "--frames"}, {"--frames needs a value, as in --frames N\n      try: vyra help capture"});
    expect_wrong({"capture", "--out", "--json"}, {"--out needs a value"});
    expect_wrong({"info", "--scanner", ""}, {"--scanner is given an empty value"});
    expect_wrong({"capture", "--out", ""}, {"--out is given an empty value"});
    expect_wrong({"calibration"}, {"calibration needs --out FILE\n"});
}

TEST_F(Usage_test, as_json_it_is_an_object_wherever_json_was_asked_for)
{
    const std::vector<std::vector<std::string>> calls = {{"--json", "capture", "--frames", "x"},
                                                         {"capture", "--frames", "x", "--json"},
                                                         {"capture", "--json", "--frames", "x"}};
    for (const auto& call : calls) {
        const Result result = run(call);
        EXPECT_EQ(result.code, 2);
        EXPECT_EQ(Json::parse(result.err), (Json{{"error",
                                                  {{"message", "--frames: \"x\" is no whole number from 0 up"},
                                                   {"try", "vyra help capture"},
                                                   {"exit_code", 2},
                                                   {"cause", "wrong_usage"}}}}));
    }
    EXPECT_THAT(run({"beep", "--", "--json"}).err, ::testing::StartsWith("vyra: ")) << "behind -- it is no option";
    EXPECT_EQ(Json::parse(run({"leds", "d", "1=lit1", "--json"}).err)["error"]["try"], "vyra help leds");
}

TEST_F(Usage_test, impossible_captures_are_wrong)
{
    expect_wrong({"capture", "--frames", "-1", "--out", path("images")},
                 {"--frames: \"-1\" is no whole number from 0 up"});
    expect_wrong({"capture", "--frames", "many", "--out", path("images")}, {"\"many\" is no whole number from 0 up"});
    expect_wrong({"capture", "--timeout", "0", "--out", path("images")}, {"\"0\" is no number from 0.1 to 86400"});
    expect_wrong({"capture", "--timeout", "nan", "--out", path("images")}, {"\"nan\" is no number"});
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
    expect_wrong({"leds", "a", "1=lit1", "2=lit1", "1=off"}, {"position 1 is named twice"});
}

TEST_F(Usage_test, an_unknown_tone_pattern_is_answered_with_the_valid_ones)
{
    expect_wrong({"beep"}, {"beep needs PATTERN"});
    for (const char* pattern : {"4", "loud", "-1", "00"}) {
        expect_wrong({"beep", "--", pattern}, {std::string("no tone pattern \"") + pattern + "\"", "0 or double",
                                               "1 or long", "2 or short", "3 or low"});
    }
}

TEST_F(Usage_test, an_image_file_says_its_form_by_its_end)
{
    expect_wrong({"calibration", "--out", "flat.jpg"}, {"\"flat.jpg\"", ".png", ".raw"});
    expect_wrong({"snapshot", "--out", "shot"}, {"\"shot\"", ".png", ".raw"});
    expect_wrong({"calibration"}, {"calibration needs --out FILE"});
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
