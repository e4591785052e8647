#include "driver_stage.h"

namespace simulator_test {
namespace {

class Led_test : public Driver_test {};

TEST_F(Led_test, each_area_keeps_its_last_command_and_the_history_all)
{
    initialize();
    void* handle = open();
    EXPECT_EQ(QXDR_SetLeds(handle, 0, 0x163, 1, 0), 0U);
    EXPECT_EQ(QXDR_SetLeds(handle, 1, 0x1E, 1, 5), 0U);
    EXPECT_EQ(QXDR_SetLeds(handle, 0, 0, 0, 0), 0U);
    brenvozulta_sim_leds leds{};
    ASSERT_TRUE(brenvozulta_sim_led_state(scanner, 0, &leds));
    EXPECT_EQ(leds.pattern, 0);
    ASSERT_TRUE(brenvozulta_sim_led_state(scanner, 1, &leds));
    EXPECT_EQ(leds.area, 1);
    EXPECT_EQ(leds.pattern, 0x1E);
    EXPECT_EQ(leds.on, 1);
    EXPECT_EQ(leds.fifth, 5);
    ASSERT_EQ(brenvozulta_sim_led_history_count(scanner), 3U);
    ASSERT_TRUE(brenvozulta_sim_led_history(scanner, 0, &leds));
    EXPECT_EQ(leds.pattern, 0x163);
    EXPECT_FALSE(brenvozulta_sim_led_history(scanner, 3, &leds));
}

TEST_F(Led_test, refused_commands_change_nothing)
{
    initialize();
    void* handle = open();
    EXPECT_EQ(QXDR_SetLeds(handle, 3, 1, 1, 0), 1U);
    ASSERT_TRUE(brenvozulta_sim_fail("QXDR_SetLeds", 9, 1));
    EXPECT_EQ(QXDR_SetLeds(handle, 0, 1, 1, 0), 9U);
    EXPECT_EQ(brenvozulta_sim_led_history_count(scanner), 0U);
    brenvozulta_sim_leds leds{};
    EXPECT_FALSE(brenvozulta_sim_led_state(scanner, 3, &leds));
    EXPECT_FALSE(brenvozulta_sim_led_state("nobody", 0, &leds));
}

}  // namespace
}  // namespace simulator_test
