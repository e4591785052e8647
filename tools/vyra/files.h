// Files the commands read and write. Every failure is a Failure that names the file. Names are UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "png_writer.h"

namespace vyra_tool {

std::vector<std::uint8_t> read_file(const std::string& name);

// Writes a whole file; what was written of it is removed again when it cannot be completed.
void write_file(const std::string& name, const std::vector<std::uint8_t>& bytes);

// Creates the directory, with the ones above it, unless it exists.
void make_directory(const std::string& name);
std::string in_directory(const std::string& directory, const std::string& file);
bool file_exists(const std::string& name);

// The form of an image file, by the end of its name.
enum class Image_format { png, raw };
// Throws Wrong_usage for any end but .png, .raw and .bin.
Image_format image_format(const std::string& name);
void write_image(const std::string& name, const std::vector<std::uint8_t>& pixels, Image_size size,
                 double pixels_per_inch);

}  // namespace vyra_tool
