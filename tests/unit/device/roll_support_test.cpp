// Whether the scanner captures rolled fingers, as the description of configuration 13 tells.
#include <array>

#include "device/capture_config.h"
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using kvs::brenvozulta::probe_roll_config;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint8_t roll = 13;

class Roll_support_test : public Device_test {
protected:
    void describe(const std::string& text)
    {
        ASSERT_EQ(brenvozulta_sim_set_config_description(roll, text.data(), text.size()), 1);
    }

    bool probe_of(const std::string& text)
    {
        describe(text);
        return probe_roll_config(device().driver_handle());
    }
};

TEST_F(Roll_support_test, a_description_with_1608x1000_anywhere_is_roll)
{
    open_device();
    EXPECT_TRUE(probe_of("1608x1000"));
    EXPECT_TRUE(probe_of("RQ7 roll 1608x1000"));
    EXPECT_TRUE(probe_of("1608x1000 rolled, 500 ppi"));
    EXPECT_TRUE(probe_of("x1608x10001608x10000"));
    EXPECT_TRUE(probe_of(std::string(119, 'a') + "1608x1000")) << "at the end of all 128 characters";
}

TEST_F(Roll_support_test, any_other_description_is_not)
{
    open_device();
    EXPECT_FALSE(probe_of(""));
    EXPECT_FALSE(probe_of("1608X1000"));
    EXPECT_FALSE(probe_of("1608x100"));
    EXPECT_FALSE(probe_of("1608 x 1000"));
    EXPECT_FALSE(probe_of("RQ7 flat 1600x1500"));
    EXPECT_FALSE(probe_of(std::string("flat\0 1608x1000", 15))) << "behind the terminator";
}

TEST_F(Roll_support_test, a_description_of_128_characters_without_terminator_is_read_to_its_end)
{
    open_device();
    EXPECT_FALSE(probe_of(std::string(128, 'a')));
    EXPECT_FALSE(probe_of(std::string(120, 'a') + "1608x100"));
    EXPECT_FALSE(probe_of(std::string(120, 'a') + "1608x1000")) << "the last character has no room";
    EXPECT_TRUE(probe_of(std::string(119, 'a') + "1608x1000"));
}

TEST_F(Roll_support_test, a_driver_that_succeeds_without_a_description_has_no_roll)
{
    open_device();
    ASSERT_TRUE(probe_of(std::string(100, 'a') + "1608x1000"));
    brenvozulta_sim_fail("QXDR_GetCaptureConfig", driver_ok, 1);
    EXPECT_FALSE(probe_roll_config(device().driver_handle()));
}

TEST_F(Roll_support_test, the_driver_is_asked_for_configuration_13_alone)
{
    open_device();
    ASSERT_TRUE(probe_roll_config(device().driver_handle()));
    EXPECT_THAT(take_calls(),
                ElementsAre(HasSubstr("QXDR_GetCaptureConfig(driver_handle=" + address_text(device().driver_handle()) +
                                      ", config=13, description=0x")));
}

TEST_F(Roll_support_test, a_refusal_is_no_roll_and_is_noted)
{
    open_device();
    for (const auto& failure : driver_failures) {
        brenvozulta_sim_fail("QXDR_GetCaptureConfig", failure.result, 1);
        EXPECT_FALSE(probe_roll_config(device().driver_handle()));
        EXPECT_THAT(take_log(), ElementsAre("--info : QXDR_GetCaptureConfig for config 13 ret = " +
                                            std::to_string(static_cast<std::int32_t>(failure.result)) + " \n"));
    }
}

TEST_F(Roll_support_test, the_flag_is_1_with_roll_and_0_without)
{
    open_device();
    std::array<std::uint8_t, 3> flag = {9, 9, 9};
    EXPECT_EQ(device().is_roll_supported(&flag[1]), 0);
    EXPECT_THAT(flag, ElementsAre(9, 1, 9));
    describe("1608X1000");
    EXPECT_EQ(device().is_roll_supported(&flag[1]), 0);
    EXPECT_THAT(flag, ElementsAre(9, 0, 9));
}

TEST_F(Roll_support_test, a_scanner_without_configuration_13_has_the_flag_0_and_success)
{
    open_device();
    brenvozulta_sim_remove_capture_config(roll);
    std::uint8_t flag = 9;
    EXPECT_EQ(device().is_roll_supported(&flag), 0);
    EXPECT_EQ(flag, 0);
    EXPECT_THAT(take_log(), ElementsAre("--info : QXDR_GetCaptureConfig for config 13 ret = 12 \n"));
}

}  // namespace
