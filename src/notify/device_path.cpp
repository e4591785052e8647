#include "notify/device_path.h"

#include <cstdlib>
#include <regex>
#include <string>

namespace kvs::brenvozulta {
namespace {

// Begins with the letters that find_usb_identifiers looks for. Compiled on first use and never destroyed: nothing of
// the library runs at load or unload. The pattern has no unbounded repetition, so the depth of the matcher's recursion
// is bounded by the pattern, however long the path is.
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

// The expression decides only where its first letters stand: to try it everywhere else is most of its work.
std::optional<Usb_identifiers> find_usb_identifiers(std::string_view device_path)
{
    constexpr std::string_view beginning = "VID_";
    const char* const last = device_path.data() + device_path.size();
    for (std::size_t at = device_path.find(beginning); at != std::string_view::npos;
         at = device_path.find(beginning, at + 1)) {
        std::cmatch match;
        if (std::regex_search(device_path.data() + at, last, match, device_path_pattern(),
                              std::regex_constants::match_continuous)) {
            return Usb_identifiers{parse_hexadecimal(match.str(1)), parse_hexadecimal(match.str(2))};
        }
    }
    return std::nullopt;
}

}  // namespace kvs::brenvozulta
