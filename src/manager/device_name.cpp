#include "manager/device_name.h"

#include <algorithm>
#include <cstring>
#include <locale>

namespace kvs::brenvozulta {

std::string entry_name(const DriverDeviceEntry& entry)
{
    return {entry.name, strnlen(entry.name, sizeof entry.name)};
}

// Character by character, as names are bytes to the driver; the locale is the one that the host has set.
bool equal_names(const std::string& one, const std::string& other)
{
    const std::locale current;
    const auto& characters = std::use_facet<std::ctype<char>>(current);
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [&](char a, char b) { return characters.toupper(a) == characters.toupper(b); });
}

}  // namespace kvs::brenvozulta
