#include "image_size.h"

#include <gtest/gtest.h>

#include "failure.h"

namespace tool_tests {
namespace {

using vyra_tool::parse_image_size;

TEST(Image_size_test, width_and_height_stand_around_an_x)
{
    EXPECT_EQ(parse_image_size("1600x1500").width, 1600U);
    EXPECT_EQ(parse_image_size("1600x1500").height, 1500U);
    EXPECT_EQ(parse_image_size("1X65535").height, 65535U);
    EXPECT_EQ(parse_image_size("65535x32768").bytes(), std::size_t{65535} * 32768);
}

TEST(Image_size_test, anything_else_is_refused)
{
    for (const char* text : {"", "x", "1600", "1600x", "x1500", "1600x1500x8", "1600 x 1500", "-1x5", "0x10", "10x0",
                             "65536x1", "1x65536", "65535x65535", "65535x32769", "99999999999x1", "1600*1500"}) {
        EXPECT_THROW(parse_image_size(text), vyra_tool::Wrong_usage) << text;
    }
}

}  // namespace
}  // namespace tool_tests
