#include "image_origin.h"

#include <nlohmann/json.hpp>

#include "module.h"
#include "vyra/vyra.h"

namespace vyra_tool {

Image_origin origin_of(const Scanner& scanner, const std::string& mode)
{
    const DeviceInfo info = scanner.info();
    const auto library = loaded_module(library_name);
    return {scanner.name(), info.serial_number, info.version, mode, library ? library->version : std::string()};
}

Image_texts texts_of(const Image_origin& origin, const std::string& time)
{
    return {
        {"Scanner", origin.scanner},
        {"Serial Number", origin.serial_number},
        {"Firmware Version", origin.firmware_version},
        {"Mode", origin.mode},
        {"Creation Time", time},
        {"Software", "vyra " VYRA_VERSION_TEXT},
        {"Library", library_name + std::string(origin.library_version.empty() ? "" : " ") + origin.library_version}};
}

void add_origin(nlohmann::ordered_json& object, const Image_origin& origin)
{
    object.update({{"serial_number", origin.serial_number},
                   {"firmware_version", origin.firmware_version},
                   {"tool_version", VYRA_VERSION_TEXT},
                   {"library_version", origin.library_version}});
}

}  // namespace vyra_tool
