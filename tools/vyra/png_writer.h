// 8-bit grey images as PNG.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "image_size.h"

namespace vyra_tool {

// What an image says of itself: keywords and their texts in UTF-8.
using Image_texts = std::vector<std::pair<std::string, std::string>>;

// The PNG file of an image, with its resolution (the same across and down) as physical pixel size and a text chunk for
// each of its texts. The same image gives the same bytes. Throws a Failure when libpng refuses the image.
std::vector<std::uint8_t> encode_png(const std::uint8_t* pixels, Image_size size, double pixels_per_inch,
                                     const Image_texts& texts = {});

}  // namespace vyra_tool
