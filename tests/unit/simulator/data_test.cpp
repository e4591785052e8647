// Identity, configuration descriptions, containers, snapshots.
#include <cstring>

#include "driver_stage.h"
#include "simulator.h"

namespace simulator_test {
namespace {

class Data_test : public Driver_test {};

TEST_F(Data_test, the_same_information_by_handle_by_name_and_in_the_list)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_set_serial_number(scanner, "123456789012"));
    ASSERT_TRUE(brenvozulta_sim_set_version(scanner, -128, 127, 'z'));
    ASSERT_TRUE(brenvozulta_sim_set_port_type(scanner, 0xFFFFFFFF));
    DriverDeviceInfo by_name{};
    ASSERT_EQ(QXDR_GetDeviceInfoSN(scanner, &by_name), 0U);
    EXPECT_EQ(std::string(by_name.serial_number, 12), "123456789012");
    EXPECT_EQ(by_name.version_major, -128);
    EXPECT_EQ(by_name.version_minor, 127);
    EXPECT_EQ(by_name.version_revision, 'z');
    EXPECT_EQ(by_name.port_type, 0xFFFFFFFFU);
    DriverDeviceInfo by_handle{};
    ASSERT_EQ(QXDR_GetDeviceInfo(open(), &by_handle), 0U);
    DriverDeviceEntry entry{};
    ASSERT_EQ(QXDR_GetUsbInfo(brenvozulta_sim_handle(scanner), &entry), 0U);
    EXPECT_EQ(std::memcmp(&by_name, &by_handle, sizeof by_name), 0);
    EXPECT_EQ(std::memcmp(&by_name, &entry.info, sizeof by_name), 0);
}

TEST_F(Data_test, the_default_version_is_2_5_b)
{
    initialize();
    DriverDeviceInfo info{};
    ASSERT_EQ(QXDR_GetDeviceInfoSN(scanner, &info), 0U);
    EXPECT_EQ(info.version_major, 2);
    EXPECT_EQ(info.version_minor, 5);
    EXPECT_EQ(info.version_revision, 'b');
    EXPECT_EQ(std::string(info.serial_number, 3), "RQ7");
}

TEST_F(Data_test, raw_information_comes_back_byte_for_byte)
{
    initialize();
    std::uint8_t raw[40];
    for (std::size_t i = 0; i < sizeof raw; ++i) {
        raw[i] = static_cast<std::uint8_t>(200 + i);
    }
    ASSERT_TRUE(brenvozulta_sim_set_device_info(scanner, raw));
    DriverDeviceInfo info{};
    ASSERT_EQ(QXDR_GetDeviceInfo(open(), &info), 0U);
    EXPECT_EQ(std::memcmp(&info, raw, sizeof raw), 0);
    EXPECT_FALSE(brenvozulta_sim_set_device_info("nobody", raw));
    EXPECT_FALSE(brenvozulta_sim_set_serial_number(scanner, "1234567890123"));
}

TEST_F(Data_test, a_configuration_describes_itself_within_the_room_given)
{
    initialize();
    void* handle = open();
    char description[128];
    std::memset(description, '#', sizeof description);
    std::uint8_t size = sizeof description;
    ASSERT_EQ(QXDR_GetCaptureConfig(handle, 13, description, &size), 0U);
    EXPECT_STREQ(description, "RQ7 roll 1608x1000");
    EXPECT_EQ(size, 18);
    EXPECT_EQ(description[19], '#');
    size = 3;
    std::memset(description, '#', sizeof description);
    ASSERT_EQ(QXDR_GetCaptureConfig(handle, 13, description, &size), 0U);
    EXPECT_EQ(std::string(description, 4), "RQ7#");
    EXPECT_EQ(QXDR_GetCaptureConfig(handle, 14, description, &size), 12U);
    EXPECT_EQ(QXDR_GetCaptureConfig(handle, 13, nullptr, &size), 1U);
}

TEST_F(Data_test, a_description_of_128_bytes_has_no_terminator)
{
    initialize();
    const std::string bytes(128, 'd');
    ASSERT_TRUE(brenvozulta_sim_set_config_description(13, bytes.data(), bytes.size()));
    char description[129];
    description[128] = '#';
    std::uint8_t size = 128;
    ASSERT_EQ(QXDR_GetCaptureConfig(open(), 13, description, &size), 0U);
    EXPECT_EQ(std::string(description, 129), bytes + "#");
    EXPECT_FALSE(brenvozulta_sim_set_config_description(99, bytes.data(), 1));
}

TEST_F(Data_test, a_container_is_read_whole_or_from_its_beginning)
{
    initialize();
    const std::string bytes = "calibration data";
    ASSERT_TRUE(brenvozulta_sim_set_container(scanner, bytes.data(), bytes.size()));
    void* handle = open();
    std::uint32_t size = 0;
    ASSERT_EQ(QXDR_GetContainerSize(handle, &size), 0U);
    EXPECT_EQ(size, bytes.size());
    std::string buffer(20, '#');
    EXPECT_EQ(QXDR_ReadContainer(handle, buffer.data(), size), 0U);
    EXPECT_EQ(buffer, bytes + "####");
    buffer.assign(20, '#');
    EXPECT_EQ(QXDR_ReadContainer(handle, buffer.data(), 3), 0U);
    EXPECT_EQ(buffer, "cal#################");
    EXPECT_EQ(QXDR_ReadContainer(handle, buffer.data(), size + 1), 8U);
    EXPECT_EQ(QXDR_ReadContainer(handle, nullptr, size), 1U);
    EXPECT_EQ(QXDR_GetContainerSize(handle, nullptr), 1U);
}

TEST_F(Data_test, the_default_container_differs_between_scanners)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    std::string containers[2];
    for (int i = 0; i < 2; ++i) {
        void* handle = open(i == 0 ? scanner : "second");
        std::uint32_t size = 0;
        ASSERT_EQ(QXDR_GetContainerSize(handle, &size), 0U);
        containers[i].resize(size);
        ASSERT_EQ(QXDR_ReadContainer(handle, containers[i].data(), size), 0U);
        EXPECT_EQ(containers[i].substr(0, 14), "RQ7 PARAMETERS");
    }
    EXPECT_NE(containers[0], containers[1]);
}

TEST_F(Data_test, a_snapshot_is_the_middle_of_an_image)
{
    initialize();
    const std::string folder = make_folder();
    write_file(folder + "/1.pgm", pgm(4, 4, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
    ASSERT_TRUE(brenvozulta_sim_use_image_folder(folder.c_str(), nullptr, 0));
    ASSERT_TRUE(brenvozulta_sim_set_capture_config(5, "small", 4, 4));
    void* handle = open();
    std::vector<std::uint8_t> buffer(5, 99);
    ASSERT_EQ(QXDR_GetSnapshotAcquisition(handle, buffer.data(), 2, 2, 5), 0U);
    EXPECT_THAT(buffer, testing::ElementsAre(5, 6, 9, 10, 99));
    EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, buffer.data(), 5, 4, 5), 8U);
    EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, buffer.data(), 0, 4, 5), 8U);
    EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, buffer.data(), 2, 2, 6), 12U);
    EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, nullptr, 2, 2, 5), 1U);
}

TEST_F(Data_test, given_snapshot_bytes_are_stored_whatever_is_asked_for)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_set_snapshot(scanner, "snap", 4));
    void* handle = open();
    char buffer[6] = "#####";
    ASSERT_EQ(QXDR_GetSnapshotAcquisition(handle, buffer, 0xFFFFFFFF, 0, 7), 0U);
    EXPECT_STREQ(buffer, "snap#");
    ASSERT_TRUE(brenvozulta_sim_set_snapshot(scanner, nullptr, 0));
    EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, buffer, 0xFFFFFFFF, 0, 1), 8U);
}

// As for an image that cannot be drawn.
TEST(Unlocked_test, the_lock_is_held_again_however_the_block_is_left)
{
    std::mutex lock;
    brenvozulta_simulator::Held_lock held(lock);
    try {
        const brenvozulta_simulator::Unlocked unlocked(held);
        EXPECT_FALSE(held.owns_lock());
        throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
        EXPECT_TRUE(held.owns_lock());
    }
}

}  // namespace
}  // namespace simulator_test
