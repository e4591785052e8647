#include "image_folder.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace vyra_tool {
namespace {

const std::string prefix = "image_";
constexpr std::size_t least_digits = 4;
constexpr std::size_t most_digits = 12;  // a name with more is not one of ours

// The number in a file name such as image_0012.png or image_0012.png.part; 0 for any other name.
std::uint64_t number_in(const std::string& name)
{
    if (name.compare(0, prefix.size(), prefix) != 0) {
        return 0;
    }
    std::uint64_t number = 0;
    const char* const begin = name.data() + prefix.size();
    const char* const end = name.data() + name.size();
    const auto [rest, error] = std::from_chars(begin, end, number);
    const auto digits = static_cast<std::size_t>(rest - begin);
    const bool ours = error == std::errc() && digits >= least_digits && digits <= most_digits && rest != end;
    return ours && *rest == '.' ? number : 0;
}

}  // namespace

std::string Image_folder::file_name(std::uint64_t number, const std::string& extension)
{
    std::string digits = std::to_string(number);
    digits.insert(0, digits.size() < least_digits ? least_digits - digits.size() : 0, '0');
    return prefix + digits + extension;
}

Image_folder::Image_folder(std::string directory, std::string extension)
    : directory_(std::move(directory)), extension_(std::move(extension))
{
    for (const std::string& name : names_in(directory_)) {
        number_ = std::max(number_, number_in(name));
    }
}

Image_folder::Place Image_folder::next()
{
    while (true) {
        ++number_;
        if (std::optional<New_file> file = New_file::begin(path(number_))) {
            return {number_, std::move(*file)};
        }
    }
}

std::string Image_folder::path(std::uint64_t number) const
{
    return in_directory(directory_, file_name(number, extension_));
}

}  // namespace vyra_tool
