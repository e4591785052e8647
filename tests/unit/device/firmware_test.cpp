// Loading firmware.
#include "manager/get_manager.h"
#include "manager/manager.h"
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;

class Firmware_test : public Device_test {
protected:
    // The scanner stays where it is, as one that takes its time to restart does.
    void SetUp() override
    {
        Device_test::SetUp();
        open_device();
        const brenvozulta_sim_restart slow = {600'000, 1, 1};
        brenvozulta_sim_set_restart(&slow);
        brenvozulta_sim_fail("QXDR_ResetDevice", driver_ok, BRENVOZULTA_SIM_ALWAYS);
    }

    std::string transfer(std::size_t length, std::uint32_t result = 0) const
    {
        return scanner_call("QXDR_UpdateFirmware",
                            "image=" + address_text(image_.data()) + ", length=" + std::to_string(length), result);
    }

    std::vector<std::uint8_t> image_ = std::vector<std::uint8_t>(1000, 0x42);
};

TEST_F(Firmware_test, the_image_is_transferred_and_the_scanner_reset)
{
    EXPECT_EQ(device().update_firmware(image_.data(), image_.size()), 0);
    EXPECT_THAT(take_calls(), ElementsAre(transfer(1000), scanner_call("QXDR_ResetDevice")));
    EXPECT_EQ(brenvozulta_sim_firmware_bytes(first_scanner), 1000U);
}

TEST_F(Firmware_test, a_length_of_0_and_one_beyond_32_bits_reach_the_driver)
{
    EXPECT_EQ(device().update_firmware(image_.data(), 0), 9109);
    EXPECT_THAT(take_calls(), ElementsAre(transfer(0, 8)));
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_UpdateFirmware", 8)));
    brenvozulta_sim_fail("QXDR_UpdateFirmware", driver_ok, 1);
    EXPECT_EQ(device().update_firmware(image_.data(), 0x123456789ULL), 0);
    EXPECT_THAT(take_calls(), ElementsAre(transfer(0x123456789ULL), scanner_call("QXDR_ResetDevice")));
}

TEST_F(Firmware_test, a_null_image_is_the_driver_s_business)
{
    EXPECT_EQ(device().update_firmware(nullptr, 5), 9109);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_UpdateFirmware", "image=0x0, length=5", 1)));
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_UpdateFirmware", 1)));
}

TEST_F(Firmware_test, after_a_refused_transfer_the_scanner_is_not_reset)
{
    for (const auto& [result, status] : driver_failures) {
        brenvozulta_sim_fail("QXDR_UpdateFirmware", result, 1);
        EXPECT_EQ(device().update_firmware(image_.data(), image_.size()), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_UpdateFirmware", result)));
        EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_UpdateFirmware"));
    }
}

TEST_F(Firmware_test, a_transfer_that_breaks_off_is_translated)
{
    const brenvozulta_sim_firmware breaks_off = {0, 0, 0, 500, 9, 0};
    brenvozulta_sim_set_firmware(&breaks_off);
    EXPECT_EQ(device().update_firmware(image_.data(), image_.size()), 9016);
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_UpdateFirmware", 9)));
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_UpdateFirmware"));
}

TEST_F(Firmware_test, a_refused_reset_after_a_good_transfer_is_translated)
{
    for (const auto& [result, status] : driver_failures) {
        brenvozulta_sim_fail("QXDR_ResetDevice", result, 1);
        EXPECT_EQ(device().update_firmware(image_.data(), image_.size()), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_ResetDevice", result)));
        EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_UpdateFirmware", "QXDR_ResetDevice"));
    }
}

TEST_F(Firmware_test, a_running_video_is_neither_looked_at_nor_changed)
{
    ASSERT_EQ(device().start_camera(), 0);
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    take_calls();
    EXPECT_EQ(device().update_firmware(image_.data(), image_.size()), 0);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_UpdateFirmware", "QXDR_ResetDevice"));
    EXPECT_EQ(device().video_state(), video_running);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(9));
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(device().close(), 0) << "the device is still open";
}

TEST_F(Firmware_test, through_the_export_a_null_image_is_9109_before_the_handle_is_looked_up)
{
    EXPECT_EQ(VyraPutMemory(77, nullptr, 10), 9109);
    EXPECT_THAT(take_log(), ElementsAre("update_firmware:   Error : 9109 Error 9109 \r\n"));
    EXPECT_THAT(take_calls(), IsEmpty());
}

TEST_F(Firmware_test, through_the_export_a_closed_handle_is_9108)
{
    const std::uint32_t handle = open();
    EXPECT_EQ(VyraPutMemory(handle, image_.data(), image_.size()), 0);
    ASSERT_EQ(VyraCloseDevice_N(handle), 0);
    take_calls();
    EXPECT_EQ(VyraPutMemory(handle, image_.data(), image_.size()), 9108);
    EXPECT_THAT(take_log(), ElementsAre(error_line("update_firmware", 9108)));
    EXPECT_THAT(take_calls(), IsEmpty());
}

TEST_F(Firmware_test, through_the_export_the_state_of_the_library_comes_before_the_image)
{
    kvs::brenvozulta::get_manager()->ManagePowerEvent(true);
    EXPECT_EQ(VyraPutMemory(77, nullptr, 10), 9110);
    kvs::brenvozulta::get_manager()->ManagePowerEvent(false);
    EXPECT_THAT(take_log(), ElementsAre(error_line("update_firmware", 9110)));
    ASSERT_EQ(VyraTerminate(), 0);
    EXPECT_EQ(VyraPutMemory(77, nullptr, 10), 9101);
    EXPECT_THAT(take_log(), ElementsAre(error_line("update_firmware", 9101)));
}

}  // namespace
