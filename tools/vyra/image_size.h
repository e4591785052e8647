// The size of an image, and how it is written on the command line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vyra_tool {

struct Image_size {
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    std::size_t bytes() const noexcept { return std::size_t{width} * height; }
};

// Reads "1600x1500". Throws Wrong_usage for anything that is no image size the library can deliver.
Image_size parse_image_size(const std::string& text);

}  // namespace vyra_tool
