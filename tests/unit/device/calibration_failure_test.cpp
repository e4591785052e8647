// The calibration image when the system's resource functions fail.
#include "support/broadcasts.h"
#include "unit/device/device_test.h"
#include "unit/device/installed_library.h"
#include "win32_double/control.h"

namespace {

using namespace test_support;
using testing::Each;
using testing::ElementsAre;

class Calibration_failure_test : public Device_test {
protected:
    void SetUp() override
    {
        Device_test::SetUp();
        ASSERT_TRUE(load_installed_library());
        open_device();
        // The notifier's thread asks for modules too, until its window is there.
        ASSERT_NE(wait_for_window(), nullptr);
        win32_double::clear();
    }
    void TearDown() override
    {
        win32_double::clear();
        unload_installed_library();
        Device_test::TearDown();
    }

    void expect_failure(const char* function, const std::string& line)
    {
        win32_double::fail(function);
        std::vector<std::uint8_t> buffer(VYRA_CALIBRATION_SIZE, 0xA5);
        EXPECT_EQ(device().read_uniformity_buffers(buffer.data(), VYRA_CALIBRATION_SIZE), 9000);
        EXPECT_THAT(take_log(), ElementsAre(line));
        EXPECT_EQ(std::count(buffer.begin(), buffer.end(), 0xA5), VYRA_CALIBRATION_SIZE);
        EXPECT_EQ(device().read_uniformity_buffers(buffer.data(), VYRA_CALIBRATION_SIZE), 0) << "the next call works";
    }
};

TEST_F(Calibration_failure_test, no_module)
{
    expect_failure("GetModuleHandleA", "read_uniformity_buffers:    Error=9000: Internal VYRA  \r\n");
}

TEST_F(Calibration_failure_test, no_resource)
{
    expect_failure(
        "FindResourceA",
        "read_uniformity_buffers:    Can't find the Image Uniformity resource Error=9000: Internal VYRA  \r\n");
}

TEST_F(Calibration_failure_test, a_resource_that_cannot_be_loaded)
{
    expect_failure(
        "LoadResource",
        "read_uniformity_buffers:    Can't load the Image Uniformity resource Error=9000: Internal VYRA  \r\n");
}

TEST_F(Calibration_failure_test, a_resource_of_another_size)
{
    static const unsigned char bytes[4] = {1, 2, 3, 4};
    unload_installed_library();
    win32_double::add_module("vyrabrenvozulta.dll");
    win32_double_register_resource("vyrabrenvozulta.dll", "image_raw", 101, bytes, sizeof bytes);
    std::vector<std::uint8_t> buffer(VYRA_CALIBRATION_SIZE, 0xA5);
    EXPECT_EQ(device().read_uniformity_buffers(buffer.data(), VYRA_CALIBRATION_SIZE), 9109);
    EXPECT_THAT(take_log(), ElementsAre("read_uniformity_buffers:   Invalid Image Uniformity resource size "
                                        "Error=9109: Error 9109\r\n"));
    EXPECT_EQ(std::count(buffer.begin(), buffer.end(), 0xA5), VYRA_CALIBRATION_SIZE);
}

TEST_F(Calibration_failure_test, a_null_buffer_asks_the_system_for_nothing)
{
    EXPECT_EQ(device().read_uniformity_buffers(nullptr, VYRA_CALIBRATION_SIZE), 9109);
    EXPECT_THAT(take_log(), ElementsAre("read_uniformity_buffers:    Error=9109: Error 9109\r\n"));
    EXPECT_EQ(win32_double::calls("GetModuleHandleA"), 0U);
    EXPECT_EQ(win32_double::calls("FindResourceA"), 0U);
}

}  // namespace
