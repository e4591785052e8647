#include "files.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "failure.h"

namespace vyra_tool {
namespace {

std::filesystem::path path_of(const std::string& name)
{
    return std::filesystem::u8path(name);
}

}  // namespace

std::vector<std::uint8_t> read_file(const std::string& name)
{
    std::error_code error;
    if (std::filesystem::is_directory(path_of(name), error)) {
        throw Failure("\"" + name + "\" is a directory", "name a file");
    }
    std::ifstream stream(path_of(name), std::ios::binary);
    if (!stream) {
        throw Failure("cannot open the file \"" + name + "\"", "check its name and that you may read it");
    }
    std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (stream.bad()) {
        throw Failure("cannot read the file \"" + name + "\"", "check the disk it lies on");
    }
    return bytes;
}

void write_file(const std::string& name, const std::vector<std::uint8_t>& bytes)
{
    const std::filesystem::path path = path_of(name);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    if (!stream) {
        throw Failure("cannot create the file \"" + name + "\"",
                      "check that the directory exists and that you may write to it");
    }
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        std::error_code ignored;
        if (std::filesystem::is_regular_file(path, ignored)) {  // a device such as /dev/full stays
            std::filesystem::remove(path, ignored);
        }
        throw Failure("cannot write the file \"" + name + "\"", "check that there is room on the disk");
    }
}

void make_directory(const std::string& name)
{
    std::error_code error;
    std::filesystem::create_directories(path_of(name), error);
    if (error || !std::filesystem::is_directory(path_of(name), error)) {
        throw Failure("cannot create the directory \"" + name + "\"",
                      "choose another one, or check that you may write there");
    }
}

std::string in_directory(const std::string& directory, const std::string& file)
{
    return (path_of(directory) / path_of(file)).generic_u8string();
}

bool file_exists(const std::string& name)
{
    std::error_code error;
    return std::filesystem::exists(path_of(name), error);
}

Image_format image_format(const std::string& name)
{
    std::string extension = path_of(name).extension().u8string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    if (extension == ".png") {
        return Image_format::png;
    }
    if (extension == ".raw" || extension == ".bin") {
        return Image_format::raw;
    }
    throw Wrong_usage("\"" + name +
                      "\" does not say the form of the image: its name must end in .png (PNG), .raw or .bin "
                      "(the bare pixels)");
}

void write_image(const std::string& name, const std::vector<std::uint8_t>& pixels, Image_size size,
                 double pixels_per_inch)
{
    write_file(name,
               image_format(name) == Image_format::png ? encode_png(pixels.data(), size, pixels_per_inch) : pixels);
}

}  // namespace vyra_tool
