#include "image_size.h"

#include <charconv>
#include <limits>

#include "failure.h"

namespace vyra_tool {

std::string text_of(Image_size size)
{
    return std::to_string(size.width) + " x " + std::to_string(size.height) + " pixels";
}

Image_size parse_image_size(const std::string& text)
{
    constexpr std::uint32_t most = std::numeric_limits<std::uint16_t>::max();  // of a side, in the scanner's driver
    Image_size size;
    const char* const end = text.data() + text.size();
    const auto width = std::from_chars(text.data(), end, size.width);
    if (width.ec == std::errc() && width.ptr != end && (*width.ptr == 'x' || *width.ptr == 'X')) {
        const auto height = std::from_chars(width.ptr + 1, end, size.height);
        if (height.ec == std::errc() && height.ptr == end && size.width - 1 < most && size.height - 1 < most &&
            size.bytes() <= std::size_t{std::numeric_limits<std::int32_t>::max()}) {
            return size;
        }
    }
    throw Wrong_usage("\"" + text +
                      "\" is no image size: it must read WxH, for instance 1600x1500, with at most 65535 on a "
                      "side and 2147483647 pixels");
}

}  // namespace vyra_tool
