// The host's records to the byte, as C++ sees them; the C host checks the same.
#include "vyra/vyra.h"

#include <cstddef>
#include <type_traits>

#include <gtest/gtest.h>

namespace {

TEST(Host_records_test, have_their_sizes)
{
    EXPECT_EQ(sizeof(DeviceListRecord), 260U);
    EXPECT_EQ(sizeof(DeviceInfo), 52U);
    EXPECT_EQ(sizeof(VyraDeviceCapabilities), 56U);
    EXPECT_EQ(sizeof(DevUI), 52U);
}

TEST(Host_records_test, have_their_fields_in_place)
{
    EXPECT_EQ(offsetof(DeviceListRecord, name), 4U);
    EXPECT_EQ(sizeof(DeviceListRecord::name), 255U);
    EXPECT_EQ(offsetof(DeviceInfo, manufacturer), 0U);
    EXPECT_EQ(offsetof(DeviceInfo, model), 8U);
    EXPECT_EQ(offsetof(DeviceInfo, serial_number), 24U);
    EXPECT_EQ(offsetof(DeviceInfo, version), 40U);
    EXPECT_EQ(offsetof(VyraDeviceCapabilities, resolution), 8U);
    EXPECT_EQ(offsetof(VyraDeviceCapabilities, area_width), 12U);
    EXPECT_EQ(offsetof(VyraDeviceCapabilities, area_height), 16U);
    EXPECT_EQ(offsetof(VyraDeviceCapabilities, image_width), 20U);
    EXPECT_EQ(offsetof(VyraDeviceCapabilities, image_height), 24U);
    EXPECT_EQ(offsetof(VyraDeviceCapabilities, reserved), 28U);
    EXPECT_EQ(offsetof(DevUI, group_b), 16U);
    EXPECT_EQ(offsetof(DevUI, group_c), 32U);
    EXPECT_EQ(offsetof(DevUI, group_a_on), 40U);
    EXPECT_EQ(offsetof(DevUI, group_b_on), 44U);
    EXPECT_EQ(offsetof(DevUI, group_c_on), 48U);
}

TEST(Host_records_test, short_name_of_the_capabilities_is_the_same_record)
{
    EXPECT_TRUE((std::is_same_v<DeviceCapabilities, VyraDeviceCapabilities>));
}

TEST(Host_constants_test, have_their_values)
{
    EXPECT_EQ(VYRA_NO_HANDLE, 0xFFFFFFFFU);
    EXPECT_EQ(VYRA_CALIBRATION_SIZE, VYRA_CALIBRATION_WIDTH * VYRA_CALIBRATION_HEIGHT);
    EXPECT_EQ(VYRA_NAME_SLOT, 255U);
}

TEST(Host_constants_test, version_is_told_as_numbers_one_number_and_text)
{
    EXPECT_STREQ(VYRA_VERSION_TEXT, PROJECT_VERSION);
    EXPECT_EQ(VYRA_VERSION, VYRA_VERSION_MAJOR * 10000 + VYRA_VERSION_MINOR * 100 + VYRA_VERSION_PATCH);
}

TEST(Host_constants_test, image_sizes_are_those_of_the_modes)
{
    EXPECT_EQ(VYRA_FLAT_SIZE, VYRA_FLAT_WIDTH * VYRA_FLAT_HEIGHT);
    EXPECT_EQ(VYRA_ROLL_SIZE, VYRA_ROLL_WIDTH * VYRA_ROLL_HEIGHT);
    for (std::uint32_t mode = 0; mode <= 18; ++mode) {
        if (mode != 3) {
            EXPECT_EQ(VYRA_MODE_SIZE(mode), VYRA_MODE_WIDTH(mode) * VYRA_MODE_HEIGHT(mode)) << mode;
            EXPECT_LE(VYRA_MODE_SIZE(mode), VYRA_MAX_IMAGE_SIZE) << mode;
        }
    }
}

}  // namespace
