// list and info, and how a scanner is chosen.
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const Json two_scanners = {{"scanners",
                            {{{"name", "Left"}, {"serial_number", "SN-LEFT"}, {"version", "2.5.b"}, {"port_type", 7}},
                             {{"name", "Right"}, {"serial_number", "123456789012"}, {"version", "-1.12.A"}}}}};

class Identity_test : public Tool_test {};

TEST_F(Identity_test, list_names_the_attached_scanners)
{
    use_scenario(two_scanners);
    const Result result = run({"list"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.out,
              "Left  ORVANE RQ7-3050  serial SN-LEFT  version 2.5.b  simulated\n"
              "Right  ORVANE RQ7-3050  serial 123456789012  version -1.12.A  simulated\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(Identity_test, list_as_json)
{
    use_scenario(two_scanners);
    const Json object = object_of(run({"list", "--json"}));
    ASSERT_EQ(object["scanners"].size(), 2U);
    EXPECT_EQ(object["scanners"][0], (Json{{"name", "Left"},
                                           {"manufacturer", "ORVANE"},
                                           {"model", "RQ7-3050"},
                                           {"simulated", true},
                                           {"serial_number", "SN-LEFT"},
                                           {"version", "2.5.b"}}));
    EXPECT_EQ(object["scanners"][1]["name"], "Right");
}

TEST_F(Identity_test, a_name_that_is_not_utf8_is_replaced_in_json)
{
    use_scenario_text(R"({"scanners": [{"name": "Gr\u00fcn"}]})");
    EXPECT_EQ(object_of(run({"list", "--json"}))["scanners"][0]["name"], "Gr\u00fcn");
}

TEST_F(Identity_test, control_characters_of_a_name_do_not_reach_the_terminal)
{
    use_scenario_text(R"({"scanners": [{"name": "a\u001b[2J\u0007\u009b\u007f\u00e9\nb"}]})");
    EXPECT_THAT(run({"list"}).out, HasSubstr("a\\x1B[2J\\x07\\x9B\\x7F\u00e9\\x0Ab  ORVANE"));
    EXPECT_THAT(run({"info", "--scanner", "\x1Bx"}).err, AllOf(HasSubstr("\\x1Bx"), HasSubstr("a\\x1B[2J")));
    EXPECT_EQ(object_of(run({"list", "--json"}))["scanners"][0]["name"], "a\x1B[2J\x07\u009b\x7F\u00e9\nb");
}

TEST_F(Identity_test, an_exact_name_wins_over_one_of_another_case)
{
    use_scenario(
        {{"scanners", {{{"name", "desk"}, {"serial_number", "1"}}, {{"name", "Desk"}, {"serial_number", "2"}}}}});
    EXPECT_EQ(object_of(run({"info", "--scanner", "Desk", "--json"}))["scanner"], "Desk");
    EXPECT_EQ(object_of(run({"info", "--scanner", "DESK", "--json"}))["scanner"], "desk");
}

TEST_F(Identity_test, info_shows_what_it_could_get)
{
    use_scenario({{"faults", {{{"function", "QXDR_GetContainerSize"}, {"result", 9}}}}});
    const Result text = run({"info"});
    EXPECT_EQ(text.code, 1);
    EXPECT_THAT(text.out, AllOf(HasSubstr("version         2.5.b\n"), HasSubstr("container       not known\n"),
                                HasSubstr("capture index 2 flat, 1600 x 1500 pixels")));
    EXPECT_THAT(text.err, HasSubstr("cannot read the size of the parameter container: 9016"));
    const Result json = run({"info", "--json"});
    EXPECT_EQ(json.code, 1);
    const Json object = Json::parse(json.out);
    EXPECT_EQ(object["container_bytes"], nullptr);
    EXPECT_EQ(object["version"], "2.5.b");
}

TEST_F(Identity_test, without_a_scanner_every_command_fails_and_says_so)
{
    use_scenario({{"scanners", Json::array()}});
    const std::vector<std::vector<std::string>> commands = {
        {"list"}, {"info"}, {"leds", "--off"}, {"beep", "0"}, {"capture", "--out", path("images")}};
    for (const auto& command : commands) {
        const Result result = run(command);
        EXPECT_EQ(result.code, 3) << command[0];
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err,
                    AllOf(HasSubstr("no scanner found: 9000 VYRA_INTERNAL"), HasSubstr("try: attach a scanner")));
    }
}

TEST_F(Identity_test, a_failure_as_json_names_code_text_and_advice)
{
    use_scenario({{"scanners", Json::array()}});
    const Result result = run({"list", "--json"});
    EXPECT_EQ(result.code, 3);
    const Json error = Json::parse(result.err)["error"];
    EXPECT_EQ(error["exit_code"], 3);
    EXPECT_EQ(error["cause"], "no_such_scanner");
    EXPECT_EQ(error["retry"], "after");
    EXPECT_EQ(error["code"], 9000);
    EXPECT_EQ(error["name"], "VYRA_INTERNAL");
    EXPECT_EQ(error["message"], "no scanner found");
    EXPECT_THAT(error["text"].get<std::string>(), Not(IsEmpty()));
    EXPECT_THAT(error["try"].get<std::string>(), HasSubstr("attach a scanner"));
}

TEST_F(Identity_test, a_malformed_scenario_fails_with_file_line_and_field)
{
    use_scenario_text("{\n  \"frame_rate\": \"fast\"\n}\n");
    const Result result = run({"list"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("scenario.json:2:"), HasSubstr("frame_rate"),
                                  HasSubstr("cannot initialize the library: 9000"),
                                  HasSubstr("try: correct the scenario of the simulated driver")));
    EXPECT_THAT(result.err, Not(HasSubstr("attached")));
}

TEST_F(Identity_test, the_first_scanner_is_taken_and_said_among_several)
{
    use_scenario(two_scanners);
    const Result result = run({"info", "--json"});
    EXPECT_EQ(object_of(result)["scanner"], "Left");
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("2 scanners are attached (\"Left\", \"Right\")"), HasSubstr("taking \"Left\"")));
}

TEST_F(Identity_test, a_scanner_is_chosen_by_name_in_any_case)
{
    use_scenario(two_scanners);
    const Result result = run({"info", "--scanner", "rIGHT", "--json"});
    EXPECT_EQ(object_of(result)["scanner"], "Right");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(Identity_test, an_unknown_scanner_is_answered_with_the_attached_ones)
{
    use_scenario(two_scanners);
    const Result result = run({"info", "--scanner", "Middle"});
    EXPECT_EQ(result.code, 3);
    EXPECT_THAT(result.err, AllOf(HasSubstr("no scanner called \"Middle\" is attached: 9005 VYRA_DEVICE_UNAVAIL"),
                                  HasSubstr("choose one of \"Left\", \"Right\"")));
}

TEST_F(Identity_test, info_tells_all_that_is_known)
{
    use_scenario({{"scanners",
                   {{{"name", "Left"},
                     {"serial_number", "SN-LEFT"},
                     {"version", "2.5.b"},
                     {"port_type", 7},
                     {"container", {{"size", 300}}}}}}});
    const Json object = object_of(run({"info", "--json"}));
    EXPECT_EQ(object["manufacturer"], "ORVANE");
    EXPECT_EQ(object["model"], "RQ7-3050");
    EXPECT_EQ(object["serial_number"], "SN-LEFT");
    EXPECT_EQ(object["version"], "2.5.b");
    EXPECT_EQ(object["port_type"], 7);
    EXPECT_EQ(object["roll"], true);
    EXPECT_EQ(object["container_bytes"], 300);
    ASSERT_EQ(object["capture_indexes"].size(), 6U);
    EXPECT_EQ(object["capture_indexes"][0], (Json{{"index", 0},
                                                  {"capture", "roll"},
                                                  {"pixels_per_inch", 500},
                                                  {"image_width", 800},
                                                  {"image_height", 750},
                                                  {"area_width_mil", 1600},
                                                  {"area_height_mil", 1500}}));
    EXPECT_EQ(object["capture_indexes"][1]["image_width"], 1600);
    EXPECT_EQ(object["capture_indexes"][2]["capture"], "flat");
    EXPECT_EQ(object["capture_indexes"][5], (Json{{"index", 5}, {"capture", nullptr}}));
}

TEST_F(Identity_test, info_of_a_scanner_without_roll_capture)
{
    use_scenario({{"capture_configs", {{{"number", 13}, {"available", false}}}}});
    const Result result = run({"info"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, AllOf(HasSubstr("rolled fingers  no\n"), HasSubstr("capture index 0 nothing\n"),
                                  HasSubstr("capture index 1 flat, 1600 x 1500 pixels, 500 pixels per inch")));
}

TEST_F(Identity_test, a_scanner_that_cannot_be_opened_is_a_failure_with_its_code)
{
    use_scenario({{"faults", {{{"function", "QXDR_OpenDevice"}, {"result", 2}}}}});
    const Result result = run({"info"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("cannot open the scanner \"RQ7-3050 #1\": 9025 VYRA_DRIVER_REFUSED"),
                                  HasSubstr("try: close every other program")));
}

}  // namespace
}  // namespace tool_tests
