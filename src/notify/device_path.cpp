#include "notify/device_path.h"

#include <cstdlib>
#include <regex>
#include <string>

namespace kvs::brenvozulta {
namespace {

// Compiled on first use and never destroyed: nothing of the library runs at load or unload. The pattern has no
// unbounded repetition, so the depth of the matcher's recursion is bounded by the pattern, however long the path is.
const std::regex& device_path_pattern()
{
    static const auto* const pattern = new std::regex("VID_([A-F0-9]{4})&PID_([A-F0-9]{4})(&REV_([A-F0-9]{4}))?");
    return *pattern;
}

int parse_hexadecimal(const std::string& digits)
{
    return static_cast<int>(std::strtol(digits.c_str(), nullptr, 16));
}

}  // namespace

std::optional<Usb_identifiers> find_usb_identifiers(std::string_view device_path)
{
    const char* const first = device_path.data();
    std::cmatch match;
    if (!std::regex_search(first, first + device_path.size(), match, device_path_pattern())) {
        return std::nullopt;
    }
    return Usb_identifiers{parse_hexadecimal(match.str(1)), parse_hexadecimal(match.str(2))};
}

}  // namespace kvs::brenvozulta
