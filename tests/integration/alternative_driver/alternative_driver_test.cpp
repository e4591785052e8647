// The library works with any driver library that has the twenty functions: it uses nothing of the simulator's own.
#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "vyra/vyra.h"

namespace {

constexpr std::size_t width = 1600;
constexpr std::size_t height = 1500;

class Alternative_driver_test : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(VyraInitialize_N(nullptr, 0, 0), VYRA_OK);
        std::uint32_t count = 1;
        char name[VYRA_NAME_SLOT + 305] = {};
        ASSERT_EQ(VyraGetDeviceList(&count, name), VYRA_OK);
        ASSERT_STREQ(name, "another scanner") << "the loader took another driver library";
        ASSERT_EQ(VyraOpenDevice(name, &handle_), VYRA_OK);
    }

    void TearDown() override
    {
        EXPECT_EQ(VyraCloseDevice_N(handle_), VYRA_OK);
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
    }

    // The next image, asked for as a host does.
    void* next_image() const
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        void* filled = nullptr;
        while (VyraGetVideoResult(handle_, &filled, nullptr) == VYRA_VIDEO_TIMEOUT &&
               std::chrono::steady_clock::now() < end) {
            std::this_thread::yield();
        }
        return filled;
    }

    std::uint32_t handle_ = VYRA_NO_HANDLE;
};

TEST_F(Alternative_driver_test, tells_its_identity_and_data)
{
    DeviceInfo info = {};
    EXPECT_EQ(VyraBrenvoGetDeviceInfo(handle_, &info), VYRA_OK);
    EXPECT_STREQ(info.manufacturer, "ORVANE");
    EXPECT_STREQ(info.serial_number, "ALT-0000001");
    EXPECT_STREQ(info.version, "7.8.c");
    std::uint32_t number = 0;
    EXPECT_EQ(VyraBrenvoZultaGetPortType(handle_, &number), VYRA_OK);
    EXPECT_EQ(number, 3U);
    EXPECT_EQ(VyraBrenvoZultaGetGlobalParamSize(handle_, &number), VYRA_OK);
    EXPECT_EQ(number, 4321U);
    std::uint8_t bytes[4] = {};
    EXPECT_EQ(VyraBrenvoZultaReadGlobalParam(handle_, bytes, 4), VYRA_OK);
    EXPECT_EQ(bytes[3], 0x42);
    std::uint8_t roll = 1;
    EXPECT_EQ(VyraBrenvoZultaIsRollSupported(handle_, &roll), VYRA_OK);
    EXPECT_EQ(roll, 0);
}

TEST_F(Alternative_driver_test, captures_images_and_stops)
{
    for (int start = 0; start < 2; ++start) {
        ASSERT_EQ(VyraBrenvoStartVideo(handle_, 1, 0), VYRA_OK);
        for (int frame = 0; frame < 3; ++frame) {
            std::vector<std::uint8_t> buffer(width * height, 7);
            ASSERT_EQ(VyraSubmitVideoRequest(handle_, buffer.data(), 0), VYRA_OK);
            ASSERT_EQ(next_image(), buffer.data());
            EXPECT_EQ(buffer[0], 0);
            EXPECT_EQ(buffer[8], 255);
            EXPECT_EQ(buffer[8 * width], 255);
            EXPECT_EQ(buffer.back(), ((height - 1) / 8 + (width - 1) / 8) % 2 == 0 ? 0 : 255);
        }
        ASSERT_EQ(VyraStopVideo(handle_), VYRA_OK);
    }
    EXPECT_EQ(VyraBrenvoStartVideo(handle_, 0, 0), VYRA_CAPTURE_CONFIG);
}

}  // namespace
