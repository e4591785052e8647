// The DLLs that the process has loaded. module_windows.cpp or module_posix.cpp implements it.
#pragma once

#include <optional>
#include <string>

namespace vyra_tool {

struct Module {
    std::string file;     // whole path, in UTF-8
    std::string version;  // as its version resource has it; empty where there is none
    bool simulated = false;
};

// The loaded DLL of this name, given without its ending; none when it is not loaded.
std::optional<Module> loaded_module(const std::string& name);

constexpr const char* library_name = "vyrabrenvozulta";
constexpr const char* driver_name = "BrenvoZulta_USB";

// Whether the driver library is the simulated one.
inline bool driver_is_simulated()
{
    const auto driver = loaded_module(driver_name);
    return driver && driver->simulated;
}

}  // namespace vyra_tool
