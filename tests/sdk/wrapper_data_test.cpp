// What the C++ objects read from a scanner and send to it, against the simulated one.
#include <optional>
#include <vector>

#include "sdk/wrapper_stage.h"
#include "win32_double/control.h"

namespace {

using test_support::default_scanner;
using test_support::patience;
using ::testing::ElementsAre;
using ::testing::Optional;

class Wrapper_data_test : public test_support::Wrapper_stage {
protected:
    void SetUp() override
    {
        Wrapper_stage::SetUp();
        library_.emplace();
        scanner_.emplace(*library_, default_scanner);
    }
    void TearDown() override
    {
        scanner_.reset();
        library_.reset();
        Wrapper_stage::TearDown();
    }

    std::optional<vyra::library> library_;
    std::optional<vyra::scanner> scanner_;
};

TEST_F(Wrapper_data_test, identity_is_there_without_opening)
{
    scanner_->close();
    EXPECT_STREQ(library_->info(default_scanner).model, "RQ7-3050");
    try {
        library_->info("nobody");
        FAIL() << "identified";
    } catch (const vyra::error& error) {
        EXPECT_EQ(error.code(), VYRA_INTERNAL);
        EXPECT_THAT(error.what(), ::testing::StartsWith("cannot read the identity of \"nobody\": 9000"));
    }
}

TEST_F(Wrapper_data_test, capabilities_are_those_of_the_mode)
{
    using Record = VyraDeviceCapabilities;
    EXPECT_THAT(scanner_->capabilities(vyra::mode::roll), Optional(::testing::Field(&Record::image_width, 800U)));
    EXPECT_THAT(scanner_->capabilities(vyra::mode::flat), Optional(::testing::Field(&Record::resolution, 500U)));
    ASSERT_EQ(brenvozulta_sim_remove_capture_config(13), 1);
    scanner_->close();
    const vyra::scanner flat_only(*library_, default_scanner);
    EXPECT_FALSE(flat_only.can_roll());
    EXPECT_FALSE(flat_only.capabilities(vyra::mode::roll));
}

TEST_F(Wrapper_data_test, port_is_the_drivers_number)
{
    scanner_->close();
    ASSERT_EQ(brenvozulta_sim_set_port_type(default_scanner, 3), 1);
    EXPECT_EQ(vyra::scanner(*library_, default_scanner).port_type(), 3U);
}

TEST_F(Wrapper_data_test, leds_that_are_shown_can_be_asked_for)
{
    EXPECT_EQ(scanner_->shown().group_b[2], 0U);
    DevUI leds = {};
    leds.group_b[2] = VYRA_LED_LIT_3;
    leds.group_b_on = 1;
    scanner_->show(leds);
    EXPECT_EQ(scanner_->shown().group_b[2], VYRA_LED_LIT_3);
    EXPECT_EQ(scanner_->shown().group_b_on, 1U);
}

TEST_F(Wrapper_data_test, tones_are_the_computers)
{
    win32_double::clear();
    scanner_->play(vyra::tone::low_tone);
    scanner_->play(vyra::tone::double_tone);
    std::vector<DWORD> durations;
    for (const auto& tone : win32_double::beeps()) {
        durations.push_back(tone.duration);
    }
    EXPECT_THAT(durations, ElementsAre(600, 200, 300));
}

TEST_F(Wrapper_data_test, parameters_are_the_whole_container)
{
    const std::vector<std::uint8_t> stored = {1, 2, 3, 4, 5};
    ASSERT_EQ(brenvozulta_sim_set_container(default_scanner, stored.data(), stored.size()), 1);
    EXPECT_EQ(scanner_->parameters(), stored);
    brenvozulta_sim_fail("QXDR_ReadContainer", 3, 1);
    EXPECT_EQ(code_of([&] { scanner_->parameters(); }), VYRA_NOT_INITIALIZED);
    ASSERT_EQ(brenvozulta_sim_set_container(default_scanner, stored.data(), 0), 1);
    EXPECT_THAT(scanner_->parameters(), ::testing::IsEmpty());
}

TEST_F(Wrapper_data_test, calibration_image_has_its_size_and_values)
{
    const auto pixels = scanner_->calibration();
    ASSERT_EQ(pixels.size(), vyra::calibration_size.bytes());
    const std::size_t middle = pixels.size() / 2 + vyra::calibration_size.width / 2;
    EXPECT_GT(pixels[middle], pixels.front()) << "darker towards the edges";
    scanner_->close();
    EXPECT_EQ(code_of([&] { scanner_->calibration(); }), VYRA_BAD_SCANNER_IDX);
}

TEST_F(Wrapper_data_test, snapshot_passes_the_drivers_values_through)
{
    const std::vector<std::uint8_t> taken = {9, 8, 7};
    ASSERT_EQ(brenvozulta_sim_set_snapshot(default_scanner, taken.data(), taken.size()), 1);
    brenvozulta_sim_clear_calls();
    std::vector<std::uint8_t> buffer(taken.size());
    scanner_->take_snapshot(buffer.data(), 11, 22, 33);
    EXPECT_EQ(buffer, taken);
    brenvozulta_sim_call call = {};
    ASSERT_EQ(brenvozulta_sim_get_call(0, &call), 1);
    EXPECT_THAT(std::vector<std::uint64_t>(call.arguments + 2, call.arguments + 5), ElementsAre(11, 22, 33));
}

TEST_F(Wrapper_data_test, firmware_is_loaded_and_the_scanner_stays_open)
{
    const std::vector<std::uint8_t> image(1000, 5);
    scanner_->load_firmware(image.data(), image.size());
    EXPECT_EQ(brenvozulta_sim_firmware_bytes(default_scanner), image.size());
    wait_for_restart();
    EXPECT_FALSE(scanner_->is_unplugged());
    EXPECT_STREQ(scanner_->info().model, "RQ7-3050");
    brenvozulta_sim_fail("QXDR_UpdateFirmware", 9, 1);
    EXPECT_EQ(code_of([&] { scanner_->load_firmware(image.data(), image.size()); }), VYRA_DEVICE_TIMEOUT);
    unplug();
    EXPECT_TRUE(scanner_->is_unplugged()) << "a refused firmware excuses no removal";
}

TEST_F(Wrapper_data_test, reset_scanner_captures_again)
{
    brenvozulta_sim_set_idle_stop_result(0);  // a refusal would close the scanner
    Memory memory(vyra::size_of(vyra::mode::flat).bytes());
    {
        vyra::video video(*scanner_, vyra::mode::flat);
        video.submit_all(memory.data(), memory.size());
        scanner_->reset();
        wait_for_restart();
        EXPECT_THROW(video.wait(patience), std::logic_error) << "its video has ended";
    }
    EXPECT_FALSE(scanner_->is_unplugged());
    vyra::video video(*scanner_, vyra::mode::flat);
    video.submit_all(memory.data(), memory.size());
    deliver(6);
    EXPECT_TRUE(video.wait(patience));
    unplug();
    EXPECT_THROW(video.wait(patience), vyra::unplugged) << "a restart excuses one going";
}

TEST_F(Wrapper_data_test, scanner_that_does_not_come_back_is_unplugged)
{
    const brenvozulta_sim_restart never_back = {0, 0, 1};
    ASSERT_EQ(brenvozulta_sim_set_restart(&never_back), 1);
    brenvozulta_sim_fail("QXDR_ResetDevice", 4, 1);
    EXPECT_EQ(code_of([&] { scanner_->reset(); }), VYRA_DEVICE_UNAVAIL);
    EXPECT_TRUE(scanner_->is_unplugged());
}

}  // namespace
