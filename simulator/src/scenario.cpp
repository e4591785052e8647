#include "scenario.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <set>

#include "bus.h"
#include "capture.h"
#include "files.h"
#include "image_source.h"
#include "scenario_fields.h"
#include "scenario_timeline.h"

namespace brenvozulta_simulator {
namespace {

constexpr std::int64_t max_32 = 0xFFFFFFFF;
constexpr std::int64_t max_container = 64 << 20;
constexpr std::int64_t max_64 = INT64_MAX;

class Scenario_reader {
public:
    explicit Scenario_reader(const std::string& source) : source_(source) {}

    Scenario read(const Json_value& tree)
    {
        Fields fields(source_, "", tree);
        std::string description;  // for whoever reads the scenario
        fields.text("description", description, 0, SIZE_MAX);
        read_scanners(fields);
        fields.list("capture_configs", [this](Fields& config) { read_config(config); });
        fields.real("frame_rate", scenario_.settings.frame_rate, 0, frame_rate_max);
        fields.object("images", [this](Fields& images) { read_images(images); });
        fields.list("faults", [this](Fields& fault) { read_fault(fault); });
        read_handle_reuse(fields);
        fields.integer("reinitialize_result", scenario_.settings.reinitialize_result, 0, driver_result_last);
        fields.integer("reopen_result", scenario_.settings.reopen_result, 0, driver_result_last);
        fields.integer("idle_stop_result", scenario_.settings.idle_stop_result, 0, driver_result_last);
        read_stop_patience(fields);
        fields.object("list_count", [this](Fields& count) { read_list_count(count); });
        fields.object("restart", [this](Fields& restart) { read_restart(restart); });
        fields.object("firmware", [this](Fields& firmware) { read_firmware(firmware); });
        fields.list("timeline", [this](Fields& entry) { read_timeline(entry); });
        fields.end();
        return std::move(scenario_);
    }

private:
    std::filesystem::path resolve(const std::string& path) const
    {
        return path_of(source_).parent_path() / path_of(path);
    }

    void read_scanners(Fields& fields)
    {
        const bool there = fields.list("scanners", [this](Fields& scanner) { read_scanner(scanner); });
        if (!there) {
            scenario_.scanners.push_back({default_identity(BRENVOZULTA_SIM_DEFAULT_SCANNER), true});
        }
    }

    void read_scanner(Fields& fields)
    {
        std::string name;
        if (!fields.text("name", name, 1, name_max)) {
            fields.wrong("name", "is missing");
        }
        for (const auto& other : scenario_.scanners) {
            if (other.identity.name == name) {
                fields.wrong("name", "names another scanner already");
            }
        }
        Scenario::Scanner_entry entry{default_identity(name), true};
        DriverDeviceInfo& info = entry.identity.info;
        std::string serial_number;
        if (fields.text("serial_number", serial_number, 0, sizeof info.serial_number)) {
            set_serial_number(info, serial_number);
        }
        read_version(fields, info);
        fields.integer("port_type", info.port_type, 0, max_32);
        fields.boolean("attached", entry.attached);
        fields.object("container",
                      [&](Fields& container) { entry.identity.container = read_container(container, name); });
        std::string snapshot;
        if (fields.text("snapshot", snapshot, 1, 4096)) {
            entry.identity.snapshot = file_content(fields, "snapshot", snapshot);
        }
        scenario_.scanners.push_back(std::move(entry));
    }

    // "2.5.b": two numbers of a signed byte and one character, or none for a zero byte.
    void read_version(Fields& fields, DriverDeviceInfo& info)
    {
        std::string text;
        if (!fields.text("version", text, 1, 16)) {
            return;
        }
        const char* at = text.data();
        const char* const end = at + text.size();
        if (!read_version_number(at, end, info.version_major) || !read_version_number(at, end, info.version_minor) ||
            end - at > 1) {
            fields.wrong("version", "is not like \"2.5.b\" with numbers from -128 to 127 and at most one character");
        }
        info.version_revision = at < end ? *at : '\0';
    }

    // A number that its field holds, and the point behind it.
    static bool read_version_number(const char*& at, const char* end, std::int8_t& number)
    {
        int value = 0;
        const auto read = std::from_chars(at, end, value);
        if (read.ec != std::errc() || value < INT8_MIN || value > INT8_MAX || read.ptr == end || *read.ptr != '.') {
            return false;
        }
        number = static_cast<std::int8_t>(value);
        at = read.ptr + 1;
        return true;
    }

    std::shared_ptr<const std::vector<std::uint8_t>> file_content(Fields& fields, const char* name,
                                                                  const std::string& path)
    {
        try {
            return std::make_shared<const std::vector<std::uint8_t>>(read_file(resolve(path)));
        } catch (const std::exception& error) {
            fields.wrong(name, error.what());
        }
    }

    std::shared_ptr<const std::vector<std::uint8_t>> read_container(Fields& fields, const std::string& name)
    {
        std::string path;
        std::size_t size = 0;
        std::uint64_t seed = stable_hash(name);
        const bool generated = fields.integer("size", size, 0, max_container);
        const bool seeded = fields.integer("seed", seed, 0, max_64);
        if (fields.text("file", path, 1, 4096) == generated) {
            fields.wrong("has to have one of file and size");
        }
        if (seeded && !generated) {
            fields.wrong("seed", "is for size: a file has its bytes already");
        }
        return generated ? generated_container(size, seed) : file_content(fields, "file", path);
    }

    void read_config(Fields& fields)
    {
        std::uint8_t number = 0;
        if (!fields.integer("number", number, 0, UINT8_MAX)) {
            fields.wrong("number", "is missing");
        }
        bool available = true;
        fields.boolean("available", available);
        auto& configs = scenario_.settings.configs;
        const auto known = configs.find(number);
        Capture_config config = known == configs.end() ? Capture_config{} : known->second;
        const bool described = fields.text("description", config.description, 0, description_max);
        const bool wide = fields.integer("width", config.width, 1, UINT16_MAX);
        const bool high = fields.integer("height", config.height, 1, UINT16_MAX);
        const bool complete = described && wide && high;
        if (!available) {
            configs.erase(number);
        } else if (!complete && known == configs.end()) {
            fields.wrong("needs description, width and height: " + std::to_string(number) + " has no defaults");
        } else if (std::size_t{config.width} * config.height > config_pixels_max) {
            fields.wrong("has more than " + std::to_string(config_pixels_max) + " pixels");
        } else {
            configs[number] = std::move(config);
        }
    }

    void read_images(Fields& fields)
    {
        std::string source;
        if (!fields.text("source", source, 1, 16)) {
            fields.wrong("source", "is missing");
        }
        if (source == "synthetic") {
            std::uint64_t seed = default_seed;
            fields.integer("seed", seed, 0, max_64);
            scenario_.settings.images = synthetic_images(seed);
        } else if (source == "folder") {
            std::string folder;
            if (!fields.text("folder", folder, 1, 4096)) {
                fields.wrong("folder", "is missing");
            }
            try {
                scenario_.settings.images = folder_images(name_of(resolve(folder)));
            } catch (const std::exception& error) {
                fields.wrong("folder", error.what());
            }
        } else {
            fields.wrong("source", "is not \"synthetic\" or \"folder\"");
        }
    }

    void read_fault(Fields& fields)
    {
        std::string name;
        Function_faults& faults = scenario_.faults.of(fields.function("function", name));
        fields.integer("delay_ms", faults.delay_ms, 0, max_milliseconds);
        fields.integer("return_delay_ms", faults.return_delay_ms, 0, max_milliseconds);
        bool carry_out = false;
        const bool result = fields.integer("result", faults.fault.result, 0, driver_result_last);
        const bool skip = fields.integer("skip", faults.fault.skip, 0, max_count);
        const bool times = read_times(fields, faults.fault.times);
        const bool carry = fields.boolean("carry_out", carry_out);
        if ((skip || times || carry) && !result) {
            fields.wrong("result", "is missing");
        }
        faults.fault.carry_out = carry_out ? 1 : 0;
        if (result && !times) {
            faults.fault.times = BRENVOZULTA_SIM_ALWAYS;
        }
    }

    // A name that no scanner has is a slip of the pen as a rule, and would silently make a scanner.
    void read_timeline(Fields& fields)
    {
        Timeline_entry entry = read_timeline_entry(fields);
        bool is_new = false;
        fields.boolean("new", is_new);
        if (is_new && entry.what == Timeline_entry::What::image) {
            fields.wrong("new", "is for plug and unplug");
        }
        if (is_new) {
            new_names_.insert(entry.scanner);
        } else if (entry.what != Timeline_entry::What::image && !knows(entry.scanner)) {
            fields.wrong(entry.what == Timeline_entry::What::plug ? "plug" : "unplug",
                         "names no scanner of the scenario; with \"new\": true it is one that nothing else is said of");
        }
        scenario_.settings.timeline.push_back(std::move(entry));
    }

    bool knows(const std::string& name) const
    {
        return new_names_.count(name) != 0 ||
               std::any_of(scenario_.scanners.begin(), scenario_.scanners.end(),
                           [&](const auto& scanner) { return scanner.identity.name == name; });
    }

    static bool read_times(Fields& fields, std::int32_t& times)
    {
        std::int64_t number = 0;
        const bool there = fields.integer_or("times", number, 1, max_count, "always", BRENVOZULTA_SIM_ALWAYS);
        times = there ? static_cast<std::int32_t>(number) : times;
        return there;
    }

    void read_stop_patience(Fields& fields)
    {
        std::int64_t patience = scenario_.settings.stop_patience_ms;
        fields.integer_or("stop_patience_ms", patience, 0, max_milliseconds, "unlimited", BRENVOZULTA_SIM_UNLIMITED);
        scenario_.settings.stop_patience_ms = static_cast<std::uint32_t>(patience);
    }

    void read_handle_reuse(Fields& fields)
    {
        std::size_t reuse = 0;
        fields.choice("reuse_handles", reuse, {"never", "after_close", "at_once"});
        scenario_.settings.reuse_handles = static_cast<Handle_reuse>(reuse);
    }

    void read_list_count(Fields& fields)
    {
        Settings& settings = scenario_.settings;
        if (!fields.integer("count", settings.list_count, INT32_MIN, INT32_MAX)) {
            fields.wrong("count", "is missing");
        }
        if (!read_times(fields, settings.list_count_times)) {
            settings.list_count_times = BRENVOZULTA_SIM_ALWAYS;
        }
    }

    void read_restart(Fields& fields)
    {
        brenvozulta_sim_restart& restart = scenario_.settings.restart;
        bool returns = true;
        bool announce_unplug = true;
        fields.integer("delay_ms", restart.delay_ms, 0, max_milliseconds);
        fields.boolean("returns", returns);
        fields.boolean("announce_unplug", announce_unplug);
        restart.returns = returns ? 1 : 0;
        restart.announce_unplug = announce_unplug ? 1 : 0;
    }

    void read_firmware(Fields& fields)
    {
        brenvozulta_sim_firmware& firmware = scenario_.settings.firmware;
        bool restarts = false;
        fields.integer("bytes_per_second", firmware.bytes_per_second, 1, max_64);
        fields.integer("duration_ms", firmware.duration_ms, 0, max_milliseconds);
        fields.boolean("restarts", restarts);
        fields.integer("fail_at_byte", firmware.fail_at_byte, 0, max_64);
        fields.integer("fail_result", firmware.fail_result, 1, driver_result_last);
        fields.integer("reset_result", firmware.reset_result, 0, driver_result_last);
        firmware.restarts = restarts ? 1 : 0;
    }

    const std::string source_;
    Scenario scenario_;
    std::set<std::string> new_names_;  // of scanners that the timeline brings in
};

}  // namespace

Scenario read_scenario(const std::string& text, const std::string& source)
{
    return Scenario_reader(source).read(parse_json(text, source));
}

Scenario read_scenario_file(const std::string& path)
{
    std::vector<std::uint8_t> bytes;
    try {
        bytes = read_file(path_of(path));
    } catch (const std::exception& error) {
        throw Scenario_error(path, 1, "", error.what());
    }
    return read_scenario(std::string(bytes.begin(), bytes.end()), path);
}

void install_scenario(Simulator& simulator, State& state, Scenario scenario)
{
    for (const auto& scanner : state.scanners) {
        if (scanner->attached) {
            detach(simulator, state, scanner);
        }
    }
    state.scanners.clear();
    state.settings = std::move(scenario.settings);
    for (std::size_t function = 0; function < function_count; ++function) {
        Function_faults& faults = state.faults.of(function);
        faults.fault = scenario.faults.of(function).fault;
        faults.delay_ms = scenario.faults.of(function).delay_ms;
        faults.return_delay_ms = scenario.faults.of(function).return_delay_ms;
    }
    for (auto& entry : scenario.scanners) {
        const auto scanner = find_or_add_scanner(state, entry.identity.name);
        scanner->identity = std::move(entry.identity);
        if (entry.attached) {
            attach(simulator, state, scanner);
        }
    }
    state.scenario_loaded = true;
    state.last_error.clear();
    simulator.changed.notify_all();
}

}  // namespace brenvozulta_simulator
