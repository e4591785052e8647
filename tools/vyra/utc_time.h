// Moments as text.
#pragma once

#include <chrono>
#include <string>

namespace vyra_tool {

// "2025-03-01T09:30:00.125Z". Of one thread at a time.
std::string utc_text(std::chrono::system_clock::time_point time);

}  // namespace vyra_tool
