#include <nlohmann/json.hpp>

#include "command_line.h"
#include "module.h"
#include "output.h"
#include "session.h"

namespace vyra_tool {
namespace {

void list(const Common_options& common, Output& output)
{
    const Library library(common.log_level);
    const bool simulated = driver_is_simulated();
    nlohmann::ordered_json scanners = nlohmann::ordered_json::array();
    for (const std::string& name : library.scanners()) {
        DeviceInfo info{};
        const bool known = VyraBrenvoMGGetDeviceInfo(name.c_str(), nullptr, &info) == VYRA_OK;
        if (output.json()) {
            scanners.push_back(
                {{"name", name}, {"manufacturer", info.manufacturer}, {"model", info.model}, {"simulated", simulated}});
            if (known) {
                scanners.back().update({{"serial_number", info.serial_number}, {"version", info.version}});
            }
        } else {
            output.line(name + "  " + info.manufacturer + " " + info.model +
                        (known ? std::string("  serial ") + info.serial_number + "  version " + info.version
                               : std::string("  (in use, or its driver tells no more)")) +
                        (simulated ? "  simulated" : ""));
        }
    }
    if (output.json()) {
        output.object({{"scanners", scanners}});
    }
}

}  // namespace

void add_list(CLI::App& app, Command_line& line)
{
    CLI::App* command = add_command(app, line, "list", "List the attached scanners, one a line",
                                    "Without a scanner the exit code is 1.\n\nExamples:\n"
                                    "  vyra list\n"
                                    "  vyra list --json");
    command->callback([&line] { line.action = list; });
}

}  // namespace vyra_tool
