// The size of an image, and how it is written on the command line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "vyra/vyra.h"

namespace vyra_tool {

struct Image_size {
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    std::size_t bytes() const noexcept { return std::size_t{width} * height; }
};

// Of the images of the two kinds of capture.
constexpr Image_size flat_size{VYRA_FLAT_WIDTH, VYRA_FLAT_HEIGHT};
constexpr Image_size roll_size{VYRA_ROLL_WIDTH, VYRA_ROLL_HEIGHT};

// As messages have it: "1600 x 1500 pixels".
std::string text_of(Image_size size);
// Reads "1600x1500". Throws Wrong_usage for anything that is no image size the library can deliver.
Image_size parse_image_size(const std::string& text);

}  // namespace vyra_tool
