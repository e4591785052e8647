// What a scanner is, wherever it is.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "brenvozulta_simulator/control.h"
#include "driver/driver.h"

namespace brenvozulta_simulator {

constexpr std::size_t name_max = BRENVOZULTA_SIM_NAME_MAX;

// Kept while the scanner is away.
struct Identity {
    std::string name;
    DriverDeviceInfo info;
    std::shared_ptr<const std::vector<std::uint8_t>> container;
    std::shared_ptr<const std::vector<std::uint8_t>> snapshot;  // null: images of the source
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
