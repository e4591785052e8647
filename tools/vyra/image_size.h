// Image sizes on the command line.
#pragma once

#include <string>

#include "png_writer.h"

namespace vyra_tool {

// Reads "1600x1500". Throws Wrong_usage for anything that is no image size the library can deliver.
Image_size parse_image_size(const std::string& text);

}  // namespace vyra_tool
