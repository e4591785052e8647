// What can be set about the simulated driver, by a scenario or by the control interface. What a scanner is stands in
// identity.h, what happens by itself in timeline_entry.h.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "brenvozulta_simulator/control.h"
#include "driver/driver.h"
#include "timeline_entry.h"

namespace brenvozulta_simulator {

class Image_source;

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

}  // namespace brenvozulta_simulator
