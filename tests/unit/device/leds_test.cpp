// Showing a record on the scanner's LEDs: what is stored, skipped, sent, reported and told to the host.
#include <cstring>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string nothing_on_line = "No area led to animate : turn off everything \n";

std::string led_command(int area, int pattern, std::uint32_t result = 0)
{
    return scanner_call("QXDR_SetLeds",
                        "area=" + std::to_string(area) + ", pattern=" + std::to_string(pattern) + ", on=1, fifth=0",
                        result);
}

bool operator==(const DevUI& left, const DevUI& right)
{
    return std::memcmp(&left, &right, sizeof(DevUI)) == 0;
}

class Leds_test : public Device_test {
protected:
    DevUI shown()
    {
        DevUI ui;
        std::memset(&ui, 0xA5, sizeof ui);
        EXPECT_EQ(device().get_device_ui(&ui), 0);
        return ui;
    }

    // Counts the calls and keeps the last context.
    void watch()
    {
        device().set_ui_cb([](void* context) { ++static_cast<Leds_test*>(context)->told_; }, this);
    }

    int told_ = 0;
    const DevUI group_a_ = {{1, 2, 3, 0}, {}, {}, 1, 0, 0};
};

TEST_F(Leds_test, a_freshly_opened_device_shows_nothing)
{
    open_device();
    EXPECT_TRUE(shown() == DevUI{});
    watch();
    const DevUI nothing = {};
    EXPECT_EQ(device().set_device_ui(&nothing), 0);
    EXPECT_THAT(take_calls(), IsEmpty());
    EXPECT_EQ(told_, 0);
}

TEST_F(Leds_test, a_record_is_stored_sent_and_told)
{
    open_device();
    watch();
    EXPECT_EQ(device().set_device_ui(&group_a_), 0);
    EXPECT_THAT(take_calls(), ElementsAre(led_command(0, 0x163)));
    EXPECT_TRUE(shown() == group_a_);
    EXPECT_EQ(told_, 1);
}

TEST_F(Leds_test, the_same_record_again_is_neither_sent_nor_told)
{
    open_device();
    watch();
    ASSERT_EQ(device().set_device_ui(&group_a_), 0);
    take_calls();
    EXPECT_EQ(device().set_device_ui(&group_a_), 0);
    EXPECT_THAT(take_calls(), IsEmpty());
    EXPECT_EQ(told_, 1);
}

TEST_F(Leds_test, a_change_of_any_one_word_is_sent)
{
    open_device();
    ASSERT_EQ(device().set_device_ui(&group_a_), 0);
    take_calls();
    DevUI ui = group_a_;
    for (std::size_t word = 0; word < 13; ++word) {
        std::uint32_t words[13];
        std::memcpy(words, &ui, sizeof ui);
        words[word] += 0x10000;
        std::memcpy(&ui, words, sizeof ui);
        EXPECT_EQ(device().set_device_ui(&ui), 0);
        EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_SetLeds")) << word;
        EXPECT_TRUE(shown() == ui) << word;
    }
}

TEST_F(Leds_test, groups_that_are_not_sent_are_stored)
{
    open_device();
    const DevUI ui = {{1, 0, 0, 0}, {7, 8, 9, 10}, {2, 3}, 5, 0, 6};
    EXPECT_EQ(device().set_device_ui(&ui), 0);
    EXPECT_THAT(take_calls(), ElementsAre(led_command(0, 0x140)));
    EXPECT_TRUE(shown() == ui);
}

TEST_F(Leds_test, with_no_group_switched_on_all_is_turned_off)
{
    open_device();
    watch();
    const DevUI ui = {{1, 2, 3, 1}, {1, 2, 3, 1}, {1, 2}, 0, 0, 0};
    EXPECT_EQ(device().set_device_ui(&ui), 0);
    EXPECT_THAT(take_calls(), ElementsAre(led_command(0, 0)));
    EXPECT_THAT(take_log(), ElementsAre(nothing_on_line));
    EXPECT_TRUE(shown() == ui);
    EXPECT_EQ(told_, 1);
}

TEST_F(Leds_test, the_driver_s_own_result_comes_back_and_the_record_counts_as_shown)
{
    open_device();
    watch();
    int commands = 0;
    for (const auto& failure : driver_failures) {
        brenvozulta_sim_fail("QXDR_SetLeds", failure.result, 1);
        DevUI ui = group_a_;
        ui.group_a_on = static_cast<std::uint32_t>(++commands) + 1;
        EXPECT_EQ(device().set_device_ui(&ui), static_cast<std::int32_t>(failure.result));
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_SetLeds", failure.result)));
        EXPECT_EQ(told_, commands);
        EXPECT_TRUE(shown() == ui);
        take_calls();
        EXPECT_EQ(device().set_device_ui(&ui), 0) << "the same again is skipped";
        EXPECT_THAT(take_calls(), IsEmpty());
    }
}

TEST_F(Leds_test, the_record_is_stored_before_the_command_and_the_host_told_after_it)
{
    open_device();
    struct Seen {
        const brenvozulta_device* device;
        DevUI ui = {};
        std::uint64_t commands = 0;
    } seen{&device()};
    device().set_ui_cb(
        [](void* context) {
            auto& now = *static_cast<Seen*>(context);
            now.device->get_device_ui(&now.ui);
            brenvozulta_sim_wait_returned("QXDR_SetLeds", 1, 0);
            now.commands = brenvozulta_sim_times_called("QXDR_SetLeds");
        },
        &seen);
    EXPECT_EQ(device().set_device_ui(&group_a_), 0);
    EXPECT_TRUE(seen.ui == group_a_);
    EXPECT_EQ(seen.commands, 1U);
}

TEST_F(Leds_test, the_turn_off_line_comes_before_the_driver_s_failure)
{
    open_device();
    brenvozulta_sim_fail("QXDR_SetLeds", driver_timeout, 1);
    const DevUI ui = {{1, 0, 0, 0}, {}, {}, 0, 0, 0};
    EXPECT_EQ(device().set_device_ui(&ui), 9);
    EXPECT_THAT(take_log(), ElementsAre(nothing_on_line, driver_error_line("QXDR_SetLeds", 9)));
}

TEST_F(Leds_test, a_null_callback_ends_the_telling)
{
    open_device();
    watch();
    EXPECT_EQ(device().set_ui_cb(nullptr, this), 0);
    EXPECT_EQ(device().set_device_ui(&group_a_), 0);
    EXPECT_EQ(told_, 0);
}

TEST_F(Leds_test, a_callback_may_have_a_null_context)
{
    open_device();
    static bool was_null = false;
    device().set_ui_cb([](void* context) { was_null = context == nullptr; }, nullptr);
    EXPECT_EQ(device().set_device_ui(&group_a_), 0);
    EXPECT_TRUE(was_null);
}

TEST_F(Leds_test, a_null_place_for_the_record_is_9109)
{
    open_device();
    EXPECT_EQ(device().get_device_ui(nullptr), 9109);
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_device_ui", 9109)));
}

// The exports hold a lock meanwhile, which the same thread may take again.
TEST_F(Leds_test, a_callback_may_call_the_library)
{
    struct Host {
        std::uint32_t handle;
        std::vector<std::int32_t> results;
        DevUI ui = {};
        DevUI next = {{}, {1, 0, 0, 0}, {}, 0, 1, 0};
    } host{open(), {}};
    const auto callback = [](void* context) {
        auto& now = *static_cast<Host*>(context);
        if (now.results.empty()) {
            now.results.push_back(VyraBrenvoGetDevUI(now.handle, &now.ui));
            now.results.push_back(VyraBrenvoSetDevUI(now.handle, &now.next));
        } else {
            now.results.push_back(77);
        }
    };
    ASSERT_EQ(VyraBrenvoSetUICallBack(host.handle, callback, &host), 0);
    take_driver_calls();
    EXPECT_EQ(VyraBrenvoSetDevUI(host.handle, &group_a_), 0);
    EXPECT_THAT(host.results, ElementsAre(0, 77, 0));
    EXPECT_TRUE(host.ui == group_a_);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_SetLeds", "QXDR_SetLeds"));
}

TEST_F(Leds_test, commands_accept_every_parameter_and_value_without_effect)
{
    open_device();
    for (const std::uint8_t parameter : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{255}}) {
        for (const std::uint32_t value : {0U, 1U, 0xFFFFFFFFU}) {
            EXPECT_EQ(device().set_cmd_parameter(parameter, value), 0);
        }
    }
    EXPECT_THAT(take_calls(), IsEmpty());
}

}  // namespace
