// The driver's results as status codes.
#include <gtest/gtest.h>

#include "device/device.h"
#include "support/driver_results.h"

namespace {

using kvs::brenvozulta::brenvozulta_device;

TEST(Driver_result_test, every_known_result_has_its_status)
{
    EXPECT_EQ(brenvozulta_device::translate_driver_result(0), VYRA_OK);
    for (const auto& [result, status] : test_support::driver_failures) {
        EXPECT_EQ(brenvozulta_device::translate_driver_result(result), status) << result;
    }
}

TEST(Driver_result_test, every_unknown_result_is_an_internal_error)
{
    for (const std::uint32_t result : {20U, 21U, 255U, 256U, 9000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(brenvozulta_device::translate_driver_result(result), 9000) << result;
    }
}

TEST(Driver_result_test, constants_have_the_numbers_that_hosts_know)
{
    EXPECT_EQ(VYRA_OK, 0);
    EXPECT_EQ(VYRA_INTERNAL, 9000);
    EXPECT_EQ(VYRA_OUT_OF_RESOURCE, 9001);
    EXPECT_EQ(VYRA_DEVICE_UNAVAIL, 9005);
    EXPECT_EQ(VYRA_DEVICE_TIMEOUT, 9016);
    EXPECT_EQ(VYRA_NOT_IMPLEMENTED, 9019);
    EXPECT_EQ(VYRA_DRIVER_REFUSED, 9025);
    EXPECT_EQ(VYRA_NOT_INITIALIZED, 9101);
    EXPECT_EQ(VYRA_BUF_TOO_SMALL, 9103);
    EXPECT_EQ(VYRA_TOO_MANY_FRAMES, 9104);
    EXPECT_EQ(VYRA_VIDEO_STOPPED, 9105);
    EXPECT_EQ(VYRA_VIDEO_TIMEOUT, 9106);
    EXPECT_EQ(VYRA_BAD_SCANNER_IDX, 9108);
    EXPECT_EQ(VYRA_BAD_PARAMETER, 9109);
    EXPECT_EQ(VYRA_SCN_UNAVAILABLE, 9110);
    EXPECT_EQ(VYRA_DRIVER_STATE, 9111);
    EXPECT_EQ(VYRA_CAPTURE_CONFIG, 9114);
}

}  // namespace
