#include "file_name.h"

#include <algorithm>
#include <cctype>

#include "failure.h"

namespace vyra_tool {
namespace {

// The device is meant whatever follows a dot or colon, and with blanks at the end.
bool names_device(std::string component)
{
    component = component.substr(0, component.find_first_of(".:"));
    component = component.substr(0, component.find_last_not_of(' ') + 1);
    std::transform(component.begin(), component.end(), component.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    for (const char* device : {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"}) {
        if (component == device) {
            return true;
        }
    }
    const std::string kind = component.substr(0, 3);
    return component.size() == 4 && (kind == "COM" || kind == "LPT") && component[3] >= '1' && component[3] <= '9';
}

bool begins_with(const std::string& text, const char* beginning)
{
    return text.rfind(beginning, 0) == 0;
}

}  // namespace

void check_file_name(const std::string& name)
{
    if (name.empty()) {
        throw Wrong_usage("an empty name is no place for a file");
    }
    if (begins_with(name, R"(\\?\)")) {
        return;  // taken literally: nothing is reserved
    }
    for (std::size_t begin = 0; begin <= name.size();) {
        const std::size_t end = std::min(name.find_first_of("\\/", begin), name.size());
        if (names_device(name.substr(begin, end - begin))) {
            throw Wrong_usage("\"" + name.substr(begin, end - begin) + "\" in \"" + name +
                              "\" is the name of a device, not of a file or directory");
        }
        begin = end + 1;
    }
    if (begins_with(name, R"(\\.\)")) {
        throw Wrong_usage("\"" + name + "\" is a device, not a file or directory");
    }
}

}  // namespace vyra_tool
