#include <thread>

#include "driver_stage.h"

namespace simulator_test {
namespace {

class Firmware_test : public Driver_test {
protected:
    static brenvozulta_sim_firmware settings() { return {0, 0, 0, BRENVOZULTA_SIM_NO_BYTE, 9, 0}; }

    static std::string version()
    {
        DriverDeviceInfo info{};
        EXPECT_EQ(QXDR_GetDeviceInfoSN(scanner, &info), 0U);
        return std::to_string(info.version_major) + "." + std::to_string(info.version_minor) + "." +
               info.version_revision;
    }

    static std::uint32_t update(void* handle, const std::string& image)
    {
        return QXDR_UpdateFirmware(handle, image.data(), image.size());
    }

    static void reset(void* handle)
    {
        const brenvozulta_sim_restart restart{1, 1, 1};
        ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
        ASSERT_EQ(QXDR_ResetDevice(handle), 0U);
        ASSERT_TRUE(brenvozulta_sim_wait_attached(scanner, patience_ms));
    }
};

TEST_F(Firmware_test, an_image_with_a_version_shows_it_after_the_restart)
{
    initialize();
    void* handle = open();
    EXPECT_EQ(update(handle, std::string("RQ7FW") + char(3) + char(7) + "q and the rest"), 0U);
    EXPECT_EQ(version(), "2.5.b");
    EXPECT_EQ(brenvozulta_sim_firmware_bytes(scanner), 21U);
    reset(handle);
    EXPECT_EQ(version(), "3.7.q");
}

TEST_F(Firmware_test, any_other_image_counts_as_the_next_minor_version)
{
    initialize();
    void* handle = open();
    EXPECT_EQ(update(handle, "RQ7FW"), 0U);
    reset(handle);
    EXPECT_EQ(version(), "2.6.b");
    ASSERT_TRUE(brenvozulta_sim_set_version(scanner, 2, 127, 'b'));
    EXPECT_EQ(update(handle, "x"), 0U);
    reset(handle);
    EXPECT_EQ(version(), "2.0.b");
}

TEST_F(Firmware_test, no_bytes_and_no_image_are_refused)
{
    initialize();
    void* handle = open();
    EXPECT_EQ(QXDR_UpdateFirmware(handle, "x", 0), 8U);
    EXPECT_EQ(QXDR_UpdateFirmware(handle, nullptr, 5), 1U);
}

TEST_F(Firmware_test, a_transfer_can_fail_at_a_byte_and_then_changes_nothing)
{
    initialize();
    void* handle = open();
    auto firmware = settings();
    firmware.fail_at_byte = 3;
    firmware.fail_result = 7;
    ASSERT_TRUE(brenvozulta_sim_set_firmware(&firmware));
    EXPECT_EQ(update(handle, "0123456"), 7U);
    EXPECT_EQ(brenvozulta_sim_firmware_bytes(scanner), 3U);
    EXPECT_EQ(update(handle, "012"), 0U) << "byte 3 is not reached";
    reset(handle);
    EXPECT_EQ(version(), "2.6.b");
}

TEST_F(Firmware_test, the_reset_after_a_transfer_can_fail_once)
{
    initialize();
    void* handle = open();
    auto firmware = settings();
    firmware.reset_result = 11;
    ASSERT_TRUE(brenvozulta_sim_set_firmware(&firmware));
    EXPECT_EQ(update(handle, "x"), 0U);
    EXPECT_EQ(QXDR_ResetDevice(handle), 11U);
    EXPECT_TRUE(brenvozulta_sim_is_attached(scanner));
    EXPECT_EQ(version(), "2.5.b");
    reset(handle);
    EXPECT_EQ(version(), "2.6.b");
}

TEST_F(Firmware_test, a_scanner_that_restarts_by_itself_accepts_the_reset_that_follows)
{
    initialize();
    ASSERT_EQ(QXDR_SetListenerCallbackHotPlug(Listener::listen), 0U);
    void* handle = open();
    auto firmware = settings();
    firmware.restarts = 1;
    ASSERT_TRUE(brenvozulta_sim_set_firmware(&firmware));
    EXPECT_EQ(update(handle, "x"), 0U);
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    ASSERT_TRUE(brenvozulta_sim_wait_attached(scanner, patience_ms));
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged, driver_event_plugged));
    EXPECT_EQ(version(), "2.6.b");
}

TEST_F(Firmware_test, a_transfer_takes_its_time)
{
    initialize();
    void* handle = open();
    auto firmware = settings();
    firmware.bytes_per_second = 1000;
    firmware.duration_ms = 10;
    ASSERT_TRUE(brenvozulta_sim_set_firmware(&firmware));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(update(handle, std::string(20, 'x')), 0U);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
}

TEST_F(Firmware_test, pulling_the_scanner_ends_a_transfer_that_would_take_an_hour)
{
    initialize();
    void* handle = open();
    auto firmware = settings();
    firmware.duration_ms = 3'600'000;
    ASSERT_TRUE(brenvozulta_sim_set_firmware(&firmware));
    std::thread host([handle] { EXPECT_EQ(update(handle, "x"), 4U); });
    ASSERT_TRUE(brenvozulta_sim_wait_called("QXDR_UpdateFirmware", 1, patience_ms));
    ASSERT_TRUE(brenvozulta_sim_remove(scanner));
    host.join();
}

}  // namespace
}  // namespace simulator_test
