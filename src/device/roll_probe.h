// Whether a scanner captures rolled fingers.
#pragma once

#include <cstdint>

namespace kvs::brenvozulta {

constexpr std::uint8_t flat_config = 1;   // flat fingers, on every scanner
constexpr std::uint8_t roll_config = 13;  // rolled fingers, where the scanner has it

// True when the driver describes the roll configuration as a 1608x1000 capture. A refusal is noted in the log.
bool probe_roll_config(void* driver_handle);

}  // namespace kvs::brenvozulta
