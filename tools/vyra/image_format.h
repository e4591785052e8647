// The forms in which images are written.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "png_writer.h"

namespace vyra_tool {

enum class Image_format { png, pgm, raw };

// An image of a resolution that is the same across and down. The texts go into a PNG file, the other forms have no
// place for them.
struct Image {
    const std::uint8_t* pixels;
    Image_size size;
    double pixels_per_inch;
    Image_texts texts = {};
};

std::vector<std::uint8_t> encode(const Image& image, Image_format format);

// "png", "pgm" or "raw".
std::string format_name(Image_format format);
// Throws Wrong_usage for any other name.
Image_format format_of_name(const std::string& name);
// By the end of a file's name. Throws Wrong_usage for any end but .png, .pgm, .raw and .bin.
Image_format format_of_file(const std::string& file);

}  // namespace vyra_tool
