// The tones of the host computer: which patterns there are.
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;

class Buzzer_test : public Device_test {};

TEST_F(Buzzer_test, patterns_0_to_3_succeed_in_every_state_of_the_device)
{
    for (std::uint32_t pattern = 0; pattern <= 3; ++pattern) {
        EXPECT_EQ(device().set_buzzer(pattern), 0);
    }
    open_device();
    EXPECT_EQ(device().set_buzzer(0), 0);
    ASSERT_EQ(device().close(), 0);
    take_calls();
    EXPECT_EQ(device().set_buzzer(3), 0);
    EXPECT_THAT(take_calls(), IsEmpty()) << "the tones are not the scanner's";
}

TEST_F(Buzzer_test, any_other_pattern_is_9109)
{
    for (const std::uint32_t pattern : {4U, 5U, 256U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(device().set_buzzer(pattern), 9109);
        EXPECT_THAT(take_log(), ElementsAre(error_line("set_buzzer", 9109)));
    }
}

TEST_F(Buzzer_test, the_export_ignores_its_last_two_arguments)
{
    const std::uint32_t handle = open();
    EXPECT_EQ(VyraBrenvoSetBuzzer(handle, 2, this, nullptr), 0);
    EXPECT_EQ(VyraBrenvoSetBuzzer(handle, 4, nullptr, this), 9109);
    EXPECT_THAT(take_log(), ElementsAre(error_line("set_buzzer", 9109)));
}

}  // namespace
