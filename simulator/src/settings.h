// What can be set about the simulated driver and its scanners, by a scenario or by the control interface.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "brenvozulta_simulator/control.h"
#include "driver/driver.h"

namespace brenvozulta_simulator {

class Image_source;
struct Delivery;

// A scenario that cannot be read: of the arguments that hosts call bad, the one that no other function answers.
constexpr std::uint32_t result_bad_scenario = driver_bad_parameter_14;

constexpr std::size_t name_max = BRENVOZULTA_SIM_NAME_MAX;
constexpr std::size_t description_max = 255;  // its length is told in one byte
constexpr std::size_t config_pixels_max = std::size_t{1} << 26;
constexpr double default_frame_rate = 15.0;
constexpr double frame_rate_max = 1000.0;
constexpr std::uint8_t default_config = 1;
constexpr std::uint8_t roll_config = 13;
constexpr std::uint64_t default_seed = 1;

struct Capture_config {
    std::string description;  // raw bytes: it may hold zeros
    std::uint16_t width;
    std::uint16_t height;
};

// What a scanner is, wherever it is: kept while it is away.
struct Identity {
    std::string name;
    DriverDeviceInfo info;
    std::shared_ptr<const std::vector<std::uint8_t>> container;
    std::shared_ptr<const std::vector<std::uint8_t>> snapshot;  // null: images of the source
};

// The moments of a driver call. Inside the call, what happens then happens on the caller's thread.
enum class Moment { after_call, on_entry, on_return };
constexpr std::size_t moment_count = 3;

struct Timeline_entry {
    enum class What { unplug, plug, image };
    Moment moment;
    std::string function;  // empty: at_ms counts from QXDR_Initialize
    std::uint64_t count;
    std::uint32_t at_ms;
    What what;
    std::string scanner;                    // that comes or goes
    std::uint32_t late_ms;                  // how much later it is announced
    std::shared_ptr<const Delivery> image;  // that is delivered
};

// When the handle of a scanner that is gone is given to the next one that comes.
enum class Handle_reuse { never, after_close, at_once };

struct Settings {
    Settings();

    double frame_rate = default_frame_rate;
    std::shared_ptr<const Image_source> images;
    std::map<std::uint8_t, Capture_config> configs;
    Handle_reuse reuse_handles = Handle_reuse::never;
    std::uint32_t reinitialize_result = driver_ok;
    std::uint32_t reopen_result = driver_ok;
    std::uint32_t idle_stop_result = driver_ok;
    std::uint32_t stop_patience_ms = 100;
    brenvozulta_sim_restart restart{50, 1, 1};
    brenvozulta_sim_firmware firmware{0, 0, 0, BRENVOZULTA_SIM_NO_BYTE, driver_timeout, driver_ok};
    std::vector<Timeline_entry> timeline;
    std::int32_t list_count = 0;
    std::int32_t list_count_times = 0;
};

// A scanner with nothing said about it but its name.
Identity default_identity(const std::string& name);

// The generated content of a container: a readable header line and then bytes that depend on the seed alone.
std::shared_ptr<const std::vector<std::uint8_t>> generated_container(std::size_t size, std::uint64_t seed);

// A 64-bit FNV-1a hash, the same on every platform.
std::uint64_t stable_hash(const std::string& text);

bool valid_name(const char* name);
void set_serial_number(DriverDeviceInfo& info, const std::string& serial_number);

}  // namespace brenvozulta_simulator
