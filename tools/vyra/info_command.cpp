#include <nlohmann/json.hpp>
#include <optional>

#include "command_line.h"
#include "failure.h"
#include "output.h"
#include "session.h"

namespace vyra_tool {
namespace {

const char* const info_guide =
    R"(Shows who made the scanner, its serial number and version, the driver's number for its
port, what each capture index offers, and how large its parameter container is. Opening
a scanner switches its LEDs off.

Examples:
  vyra info
  vyra info --scanner "RQ7-3050 #2" --json)";

constexpr std::uint32_t capture_indexes = 6;

const char* capture_index_name(std::uint32_t index)
{
    return index == 0 ? "roll" : index <= 2 ? "flat" : "no capture";
}

std::optional<DeviceCapabilities> capabilities(const Scanner& scanner, std::uint32_t index)
{
    DeviceCapabilities record{};  // stays zero when the scanner has nothing to say about the index
    check(VyraBrenvoGetCapabilities(scanner.handle(), index, &record),
          "read what capture index " + std::to_string(index) + " offers");
    return record.constant_0 != 0 ? std::optional(record) : std::nullopt;
}

struct Facts {
    DeviceInfo identity;
    std::uint32_t port_type = 0;
    bool roll = false;
    std::uint32_t container_size = 0;
    std::optional<DeviceCapabilities> capture[capture_indexes];
};

Facts facts_of(const Scanner& scanner)
{
    Facts facts{scanner.info(), 0, scanner.can_roll(), 0, {}};
    check(VyraBrenvoZultaGetPortType(scanner.handle(), &facts.port_type), "read the port type");
    check(VyraBrenvoZultaGetGlobalParamSize(scanner.handle(), &facts.container_size),
          "read the size of the parameter container");
    for (std::uint32_t index = 0; index < capture_indexes; ++index) {
        facts.capture[index] = capabilities(scanner, index);
    }
    return facts;
}

nlohmann::ordered_json capture_json(std::uint32_t index, const std::optional<DeviceCapabilities>& record)
{
    nlohmann::ordered_json object = {{"index", index}, {"capture", nullptr}};
    if (record) {
        object.update({{"capture", capture_index_name(index)},
                       {"pixels_per_inch", record->resolution},
                       {"image_width", record->image_width},
                       {"image_height", record->image_height},
                       {"area_width_mil", record->area_width},
                       {"area_height_mil", record->area_height}});
    }
    return object;
}

void print_json(const Scanner& scanner, const Facts& facts, Output& output)
{
    nlohmann::ordered_json captures = nlohmann::ordered_json::array();
    for (std::uint32_t index = 0; index < capture_indexes; ++index) {
        captures.push_back(capture_json(index, facts.capture[index]));
    }
    output.object({{"scanner", scanner.name()},
                   {"manufacturer", facts.identity.manufacturer},
                   {"model", facts.identity.model},
                   {"serial_number", facts.identity.serial_number},
                   {"version", facts.identity.version},
                   {"port_type", facts.port_type},
                   {"roll", facts.roll},
                   {"container_bytes", facts.container_size},
                   {"capture_indexes", captures}});
}

void print_text(const Scanner& scanner, const Facts& facts, Output& output)
{
    output.line("scanner         " + scanner.name());
    output.line(std::string("manufacturer    ") + facts.identity.manufacturer);
    output.line(std::string("model           ") + facts.identity.model);
    output.line(std::string("serial number   ") + facts.identity.serial_number);
    output.line(std::string("version         ") + facts.identity.version);
    output.line("port type       " + std::to_string(facts.port_type));
    output.line(std::string("rolled fingers  ") + (facts.roll ? "yes" : "no"));
    output.line("container       " + std::to_string(facts.container_size) + " bytes");
    for (std::uint32_t index = 0; index < capture_indexes; ++index) {
        std::string text = "capture index " + std::to_string(index) + " ";
        if (const auto& record = facts.capture[index]) {
            text += std::string(capture_index_name(index)) + ", " + std::to_string(record->image_width) + " x " +
                    std::to_string(record->image_height) + " pixels, " + std::to_string(record->resolution) +
                    " pixels per inch, area " + std::to_string(record->area_width) + " x " +
                    std::to_string(record->area_height) + " mil";
        } else {
            text += "nothing";
        }
        output.line(text);
    }
}

void info(const Common_options& common, Output& output)
{
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    const Facts facts = facts_of(scanner);
    output.json() ? print_json(scanner, facts, output) : print_text(scanner, facts, output);
}

}  // namespace

void add_info(CLI::App& app, Command_line& line)
{
    CLI::App* command = add_scanner_command(app, line, "info", "Show all that is known of a scanner", info_guide);
    command->callback([&line] { line.action = info; });
}

}  // namespace vyra_tool
