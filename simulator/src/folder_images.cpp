#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "files.h"
#include "image_file.h"
#include "image_source.h"

namespace brenvozulta_simulator {
namespace {

class Folder_images : public Image_source {
public:
    explicit Folder_images(std::vector<Image> images) : images_(std::move(images)) {}

    const Image& image(const Image_request& request, Image&) const override
    {
        return images_[request.frame % images_.size()];
    }

private:
    const std::vector<Image> images_;
};

bool is_image_name(const std::filesystem::path& path)
{
    std::string extension = name_of(path.extension());
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return extension == ".pgm" || extension == ".png";
}

std::vector<std::filesystem::path> image_files(const std::string& folder)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(path_of(folder))) {
        if (is_image_name(entry.path())) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

std::shared_ptr<const Image_source> folder_images(const std::string& folder)
{
    std::vector<std::filesystem::path> files;
    try {
        files = image_files(folder);
    } catch (const std::filesystem::filesystem_error& error) {
        // The general condition has a text of its own; a system's is in the letters of the machine.
        throw std::runtime_error("cannot read folder " + folder + ": " +
                                 error.code().default_error_condition().message());
    }
    if (files.empty()) {
        throw std::runtime_error("folder " + folder + " holds no .pgm or .png file");
    }
    std::vector<Image> images;
    for (const auto& file : files) {
        const std::vector<std::uint8_t> content = read_file(file);
        try {
            images.push_back(decode_image(content));
        } catch (const std::exception& error) {
            throw std::runtime_error(name_of(file) + ": " + error.what());
        }
    }
    return std::make_shared<const Folder_images>(std::move(images));
}

}  // namespace brenvozulta_simulator
