// The texts of a scanner's identity.
#pragma once

#include <cstdint>
#include <string>

#include "driver/driver.h"
#include "vyra/vyra.h"

namespace kvs::brenvozulta {

// "2.5.b" from the bytes 2, 5 and 'b': two signed numbers and a character. A zero character ends the text.
std::string format_version(std::int8_t major, std::int8_t minor, char revision);

// Clears the record and writes the constants of the one model that this library serves.
void write_model(DeviceInfo& record);

// Writes serial number and version, each cut at its bound.
void write_driver_info(DeviceInfo& record, const DriverDeviceInfo& info);

}  // namespace kvs::brenvozulta
