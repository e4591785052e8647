#include "frame_buffer.h"

#include <gtest/gtest.h>

#include <cstring>

namespace tool_tests {
namespace {

using vyra_tool::Frame_buffer;

constexpr vyra_tool::Image_size size{100, 50};

TEST(Frame_buffer_test, an_image_of_the_size_fits_whatever_it_holds)
{
    for (const int value : {0, 0x55, 0xFF}) {
        Frame_buffer buffer(size);
        buffer.prepare();
        std::memset(buffer.data(), value, size.bytes());
        EXPECT_EQ(buffer.fit(), Frame_buffer::Fit::exact);
    }
}

TEST(Frame_buffer_test, one_byte_behind_the_image_is_larger)
{
    for (const int value : {0, 0x55, 0xFF}) {
        Frame_buffer buffer(size);
        buffer.prepare();
        std::memset(buffer.data(), value, size.bytes() + 8);
        EXPECT_EQ(buffer.fit(), Frame_buffer::Fit::larger);
    }
}

TEST(Frame_buffer_test, an_unwritten_last_row_is_smaller)
{
    Frame_buffer buffer(size);
    buffer.prepare();
    std::memset(buffer.data(), 0x55, size.bytes() - size.width);
    EXPECT_EQ(buffer.fit(), Frame_buffer::Fit::smaller);
}

TEST(Frame_buffer_test, preparing_forgets_the_image_before)
{
    Frame_buffer buffer(size);
    buffer.prepare();
    std::memset(buffer.data(), 0x55, size.bytes() + 8);
    buffer.prepare();
    EXPECT_EQ(buffer.fit(), Frame_buffer::Fit::smaller);
}

TEST(Frame_buffer_test, a_small_size_still_has_room_for_the_largest_image)
{
    Frame_buffer buffer({1, 1});
    buffer.prepare();
    std::memset(buffer.data(), 0, std::size_t{3200} * 3000);  // a sanitizer would tell
    EXPECT_EQ(buffer.fit(), Frame_buffer::Fit::larger);
}

}  // namespace
}  // namespace tool_tests
