// The names of scanners.
#pragma once

#include <string>

#include "driver/driver.h"

namespace kvs::brenvozulta {

// The name that a driver entry begins with; the whole field when it is not terminated.
std::string entry_name(const DriverDeviceEntry& entry);

// Whether two names are the same scanner's: without regard to case, in the current locale.
bool equal_names(const std::string& one, const std::string& other);

}  // namespace kvs::brenvozulta
