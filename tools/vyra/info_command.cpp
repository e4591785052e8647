#include <nlohmann/json.hpp>
#include <optional>

#include "command_line.h"
#include "failure.h"
#include "module.h"
#include "output.h"
#include "session.h"

namespace vyra_tool {
namespace {

const char* const info_guide =
    R"(Shows who made the scanner, its serial number and version, the driver's number for its
port, what each capture index offers, and how large its parameter container is. What
the scanner does not tell is not known, and the exit code is that of the first thing
that it did not tell. Opening a scanner switches its LEDs off.

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

// What could be had; failures say what could not.
struct Facts {
    std::optional<DeviceInfo> identity;
    std::optional<std::uint32_t> port_type;
    std::optional<bool> roll;
    std::optional<std::uint32_t> container_size;
    std::optional<std::optional<DeviceCapabilities>> capture[capture_indexes];
    std::vector<Failure> failures;
};

std::uint32_t port_type(const Scanner& scanner)
{
    std::uint32_t type = 0;
    check(VyraBrenvoZultaGetPortType(scanner.handle(), &type), "read the port type");
    return type;
}

std::uint32_t container_size(const Scanner& scanner)
{
    std::uint32_t size = 0;
    check(VyraBrenvoZultaGetGlobalParamSize(scanner.handle(), &size), "read the size of the parameter container");
    return size;
}

Facts facts_of(const Scanner& scanner)
{
    Facts facts;
    const auto get = [&facts](auto& fact, auto read) {
        try {
            fact = read();
        } catch (const Failure& failure) {
            facts.failures.push_back(failure);
        }
    };
    get(facts.identity, [&] { return scanner.info(); });
    get(facts.port_type, [&] { return port_type(scanner); });
    get(facts.roll, [&] { return scanner.can_roll(); });
    get(facts.container_size, [&] { return container_size(scanner); });
    for (std::uint32_t index = 0; index < capture_indexes; ++index) {
        get(facts.capture[index], [&] { return capabilities(scanner, index); });
    }
    return facts;
}

template <class Fact>
nlohmann::ordered_json json_of(const std::optional<Fact>& fact)
{
    return fact ? nlohmann::ordered_json(*fact) : nlohmann::ordered_json();
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
        captures.push_back(facts.capture[index] ? capture_json(index, *facts.capture[index])
                                                : nlohmann::ordered_json({{"index", index}}));
    }
    const auto identity = [&](auto member) {
        return facts.identity ? nlohmann::ordered_json((*facts.identity).*member) : nlohmann::ordered_json();
    };
    output.object({{"scanner", scanner.name()},
                   {"manufacturer", identity(&DeviceInfo::manufacturer)},
                   {"model", identity(&DeviceInfo::model)},
                   {"serial_number", identity(&DeviceInfo::serial_number)},
                   {"version", identity(&DeviceInfo::version)},
                   {"simulated", driver_is_simulated()},
                   {"port_type", json_of(facts.port_type)},
                   {"roll", json_of(facts.roll)},
                   {"container_bytes", json_of(facts.container_size)},
                   {"capture_indexes", captures}});
}

const char* const unknown = "not known";

std::string capture_text(std::uint32_t index, const std::optional<DeviceCapabilities>& record)
{
    if (!record) {
        return "nothing";
    }
    return std::string(capture_index_name(index)) + ", " + std::to_string(record->image_width) + " x " +
           std::to_string(record->image_height) + " pixels, " + std::to_string(record->resolution) +
           " pixels per inch, area " + std::to_string(record->area_width) + " x " +
           std::to_string(record->area_height) + " mil";
}

void print_text(const Scanner& scanner, const Facts& facts, Output& output)
{
    const auto identity = [&](auto member) {
        return facts.identity ? std::string((*facts.identity).*member) : unknown;
    };
    output.line("scanner         " + scanner.name());
    output.line("manufacturer    " + identity(&DeviceInfo::manufacturer));
    output.line("model           " + identity(&DeviceInfo::model));
    output.line("serial number   " + identity(&DeviceInfo::serial_number));
    output.line("version         " + identity(&DeviceInfo::version));
    output.line(std::string("driver          ") + (driver_is_simulated() ? "simulated" : "the scanner maker's"));
    output.line("port type       " + (facts.port_type ? std::to_string(*facts.port_type) : unknown));
    output.line(std::string("rolled fingers  ") + (!facts.roll ? unknown : *facts.roll ? "yes" : "no"));
    output.line("container       " +
                (facts.container_size ? std::to_string(*facts.container_size) + " bytes" : unknown));
    for (std::uint32_t index = 0; index < capture_indexes; ++index) {
        const auto& capture = facts.capture[index];
        output.line("capture index " + std::to_string(index) + " " +
                    (capture ? capture_text(index, *capture) : unknown));
    }
}

void info(const Common_options& common, Output& output)
{
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    const Facts facts = facts_of(scanner);
    output.json() ? print_json(scanner, facts, output) : print_text(scanner, facts, output);
    if (!facts.failures.empty()) {
        throw Failure(facts.failures.front());
    }
}

}  // namespace

void add_info(CLI::App& app, Command_line& line)
{
    CLI::App* command = add_scanner_command(app, line, "info", "Show all that is known of a scanner", info_guide);
    command->callback([&line] { line.action = info; });
}

}  // namespace vyra_tool
