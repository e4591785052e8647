#include "image_format.h"

#include <algorithm>
#include <cctype>

#include "failure.h"

namespace vyra_tool {
namespace {

std::vector<std::uint8_t> bytes_of(const std::string& header, const Image& image)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(header.size() + image.size.bytes());
    bytes.insert(bytes.end(), header.begin(), header.end());
    bytes.insert(bytes.end(), image.pixels, image.pixels + image.size.bytes());
    return bytes;
}

}  // namespace

std::vector<std::uint8_t> encode(const Image& image, Image_format format)
{
    switch (format) {
        case Image_format::png:
            return encode_png(image.pixels, image.size, image.pixels_per_inch, image.texts);
        case Image_format::pgm:
            return bytes_of(
                "P5\n" + std::to_string(image.size.width) + " " + std::to_string(image.size.height) + "\n255\n", image);
        default:
            return bytes_of({}, image);
    }
}

std::string format_name(Image_format format)
{
    return format == Image_format::png ? "png" : format == Image_format::pgm ? "pgm" : "raw";
}

Image_format format_of_name(const std::string& name)
{
    for (const Image_format format : {Image_format::png, Image_format::pgm, Image_format::raw}) {
        if (name == format_name(format)) {
            return format;
        }
    }
    throw Wrong_usage("\"" + name + "\" is no form of an image: choose one of png, pgm, raw");
}

Image_format format_of_file(const std::string& file)
{
    const std::size_t dot = file.find_last_of("./\\");
    std::string end = dot == std::string::npos || file[dot] != '.' ? std::string() : file.substr(dot + 1);
    std::transform(end.begin(), end.end(), end.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (end == "png" || end == "pgm" || end == "raw") {
        return format_of_name(end);
    }
    if (end == "bin") {
        return Image_format::raw;
    }
    throw Wrong_usage("\"" + file +
                      "\" does not say the form of the image: its name must end in .png (PNG), .pgm (PGM), .raw or "
                      ".bin (the bare pixels)");
}

}  // namespace vyra_tool
