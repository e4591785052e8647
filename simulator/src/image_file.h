// Reading image files.
#pragma once

#include <cstdint>
#include <vector>

#include "image_source.h"

namespace brenvozulta_simulator {

// A PGM (P5, 8 bit) or PNG file's content as a grey image; colours become grey, transparency white. Throws
// std::runtime_error that says what is wrong.
Image decode_image(const std::vector<std::uint8_t>& content);

}  // namespace brenvozulta_simulator
