// leds and beep.
#include "in_process.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::HasSubstr;

class Feedback_test : public In_process_test {
protected:
    static brenvozulta_sim_leds leds(std::uint8_t area)
    {
        brenvozulta_sim_leds state{};
        EXPECT_EQ(brenvozulta_sim_led_state(BRENVOZULTA_SIM_DEFAULT_SCANNER, area, &state), 1);
        return state;
    }
};

TEST_F(Feedback_test, leds_of_each_group_reach_the_scanner)
{
    EXPECT_EQ(run_in_process({"leds", "a", "1=lit1", "2=lit2", "3=lit3"}).out, "group a: 1=lit1 2=lit2 3=lit3 4=off\n");
    EXPECT_EQ(leds(0).pattern, 0x163);
    EXPECT_EQ(run_in_process({"leds", "b", "1=lit1", "4=lit3"}).out, "group b: 1=lit1 2=off 3=off 4=lit3\n");
    EXPECT_EQ(leds(2).pattern, 0x100 | 0x04 | 0xC0);
    EXPECT_EQ(run_in_process({"leds", "c", "1=lit2", "2=lit3"}).out, "group c: 1=lit2 2=lit3\n");
    EXPECT_EQ(leds(1).pattern, 0x1E);
}

TEST_F(Feedback_test, leds_off_is_commanded_and_not_only_left_to_opening)
{
    ASSERT_EQ(run_in_process({"leds", "a", "1=lit1"}).code, 0);
    EXPECT_EQ(run_in_process({"leds", "--off"}).out, "all LEDs off\n");
    EXPECT_EQ(leds(0).pattern, 0);
    EXPECT_EQ(leds(0).on, 1) << "opening commands the LEDs off with an on flag of 0";
}

TEST_F(Feedback_test, leds_as_json)
{
    EXPECT_EQ(Json::parse(run_in_process({"leds", "c", "2=lit1", "--json"}).out),
              (Json{{"scanner", BRENVOZULTA_SIM_DEFAULT_SCANNER},
                    {"group", "c"},
                    {"positions", {{"1", "off"}, {"2", "lit1"}}}}));
    EXPECT_EQ(Json::parse(run_in_process({"leds", "--off", "--json"}).out),
              (Json{{"scanner", BRENVOZULTA_SIM_DEFAULT_SCANNER}, {"group", nullptr}, {"positions", Json::object()}}));
}

class Feedback_process_test : public Tool_test {};

TEST_F(Feedback_process_test, a_refused_led_command_shows_the_drivers_own_result)
{
    // The first command is that of opening, whose result does not count.
    use_scenario({{"faults", {{{"function", "QXDR_SetLeds"}, {"result", 7}, {"skip", 1}}}}});
    const Result result = run({"leds", "a", "1=lit1"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("cannot set the LEDs of \"RQ7-3050 #1\": 7 driver result 7"));
}

TEST_F(Feedback_process_test, every_pattern_is_played_by_number_and_by_name)
{
    const char* const names[] = {"double", "long", "short", "low"};
    for (int i = 0; i < 4; ++i) {
        const Json by_number = object_of(run({"beep", std::to_string(i), "--json"}));
        EXPECT_EQ(by_number["name"], names[i]);
        EXPECT_EQ(by_number["pattern"], i);
        EXPECT_EQ(object_of(run({"beep", names[i], "--json"})), by_number);
    }
    EXPECT_EQ(run({"beep", "low"}).out, "played low: 800 Hz for 600 ms\n");
}

}  // namespace
}  // namespace tool_tests
