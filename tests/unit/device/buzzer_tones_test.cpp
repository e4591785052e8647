// The tones that each pattern plays.
#include "unit/device/device_test.h"
#include "win32_double/control.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class Buzzer_tones_test : public Device_test {
protected:
    void SetUp() override
    {
        Device_test::SetUp();
        win32_double::clear();
    }
    void TearDown() override
    {
        win32_double::clear();
        Device_test::TearDown();
    }

    // Frequency and duration of every tone of the pattern.
    std::vector<std::pair<unsigned, unsigned>> tones_of(std::uint32_t pattern, std::int32_t status = 0)
    {
        win32_double::clear();
        EXPECT_EQ(device().set_buzzer(pattern), status);
        std::vector<std::pair<unsigned, unsigned>> tones;
        for (const auto& tone : win32_double::beeps()) {
            tones.emplace_back(tone.frequency, tone.duration);
        }
        return tones;
    }
};

TEST_F(Buzzer_tones_test, each_pattern_plays_its_own)
{
    EXPECT_THAT(tones_of(0), ElementsAre(Pair(1000, 200), Pair(1000, 300)));
    EXPECT_THAT(tones_of(1), ElementsAre(Pair(1000, 600)));
    EXPECT_THAT(tones_of(2), ElementsAre(Pair(1000, 300)));
    EXPECT_THAT(tones_of(3), ElementsAre(Pair(800, 600)));
}

TEST_F(Buzzer_tones_test, an_unknown_pattern_plays_nothing)
{
    EXPECT_THAT(tones_of(4, 9109), IsEmpty());
    EXPECT_THAT(tones_of(0xFFFFFFFF, 9109), IsEmpty());
    EXPECT_THAT(take_log(), ElementsAre(error_line("set_buzzer", 9109), error_line("set_buzzer", 9109)));
}

TEST_F(Buzzer_tones_test, a_tone_that_cannot_be_played_is_ignored)
{
    win32_double::clear();
    win32_double::fail("Beep", win32_double::always);
    EXPECT_EQ(device().set_buzzer(0), 0);
    EXPECT_EQ(device().set_buzzer(3), 0);
    EXPECT_EQ(win32_double::calls("Beep"), 3U);
}

}  // namespace
