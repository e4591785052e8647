// What every answer of find_usb_identifiers must agree with: the expression alone, tried everywhere.
#pragma once

#include <optional>
#include <regex>
#include <string>

#include "notify/device_path.h"

namespace kvs::brenvozulta {

inline bool operator==(const Usb_identifiers& a, const Usb_identifiers& b)
{
    return a.vendor == b.vendor && a.product == b.product;
}

}  // namespace kvs::brenvozulta

namespace test_support {

inline std::optional<kvs::brenvozulta::Usb_identifiers> identifiers_by_expression(const std::string& path)
{
    static const std::regex pattern("VID_([A-F0-9]{4})&PID_([A-F0-9]{4})(&REV_([A-F0-9]{4}))?");
    std::smatch match;
    if (!std::regex_search(path, match, pattern)) {
        return std::nullopt;
    }
    return kvs::brenvozulta::Usb_identifiers{std::stoi(match.str(1), nullptr, 16),
                                             std::stoi(match.str(2), nullptr, 16)};
}

}  // namespace test_support
