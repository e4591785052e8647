// The capture configurations of a scanner, and the host's video modes that stand for them.
#pragma once

#include <cstdint>

namespace kvs::brenvozulta {

constexpr std::uint8_t flat_config = 1;   // flat fingers, on every scanner
constexpr std::uint8_t roll_config = 13;  // rolled fingers, where the scanner has it

// The capture configuration of a host's video mode; 0 for a mode that there is not.
std::uint8_t config_of_mode(std::uint32_t mode);

// Whether a scanner captures rolled fingers: true when the driver describes the roll configuration as a 1608x1000
// capture. A refusal is noted in the log.
bool probe_roll_config(void* driver_handle);

}  // namespace kvs::brenvozulta
