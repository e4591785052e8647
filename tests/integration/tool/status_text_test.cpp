#include "status_text.h"

#include <gmock/gmock.h>

#include "vyra/status.h"

namespace tool_tests {
namespace {

using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;
using vyra_tool::status_text;

constexpr int codes[] = {VYRA_OK,
                         VYRA_INTERNAL,
                         VYRA_OUT_OF_RESOURCE,
                         VYRA_DEVICE_UNAVAIL,
                         VYRA_DEVICE_TIMEOUT,
                         VYRA_NOT_IMPLEMENTED,
                         VYRA_DRIVER_REFUSED,
                         VYRA_NOT_INITIALIZED,
                         VYRA_BUF_TOO_SMALL,
                         VYRA_TOO_MANY_FRAMES,
                         VYRA_VIDEO_STOPPED,
                         VYRA_VIDEO_TIMEOUT,
                         VYRA_BAD_SCANNER_IDX,
                         VYRA_BAD_PARAMETER,
                         VYRA_SCN_UNAVAILABLE,
                         VYRA_DRIVER_STATE,
                         VYRA_CAPTURE_CONFIG};

TEST(Status_text_test, every_code_has_its_constants_name_a_meaning_and_advice)
{
    for (const int code : codes) {
        const auto text = status_text(code);
        EXPECT_THAT(text.name, StartsWith("VYRA_")) << code;
        EXPECT_THAT(text.meaning, Not(IsEmpty())) << code;
        EXPECT_THAT(text.advice, Not(IsEmpty())) << code;
    }
    EXPECT_EQ(status_text(9110).name, "VYRA_SCN_UNAVAILABLE");
}

TEST(Status_text_test, a_drivers_own_result_is_named_as_such)
{
    EXPECT_EQ(status_text(7).name, "driver result 7");
    EXPECT_EQ(status_text(19).name, "driver result 19");
}

TEST(Status_text_test, other_codes_are_unknown)
{
    for (const int code : {-1, 9002, 9107, 9999}) {
        EXPECT_EQ(status_text(code).name, "unknown status") << code;
    }
}

}  // namespace
}  // namespace tool_tests
