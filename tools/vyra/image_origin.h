// Where an image comes from, for its file and for JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "png_writer.h"
#include "session.h"

namespace vyra_tool {

struct Image_origin {
    std::string scanner;
    std::string serial_number;
    std::string firmware_version;
    std::string mode;             // flat, roll, snapshot or calibration
    std::string library_version;  // empty where the library has no version resource
};

Image_origin origin_of(const Scanner& scanner, const std::string& mode);

// As the text chunks of a PNG file; the time is that at which the image was taken.
Image_texts texts_of(const Image_origin& origin, const std::string& time);

// Adds it to an object that names the scanner and the mode already.
void add_origin(nlohmann::ordered_json& object, const Image_origin& origin);

}  // namespace vyra_tool
