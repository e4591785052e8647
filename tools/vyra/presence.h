// The comings and goings of the scanners during a session, counted by name. The library's device-event callback carries
// no context, so there is one count for the process.
#pragma once

#include <cstdint>
#include <string>

namespace vyra_tool {

struct Presence {
    unsigned arrivals = 0;
    unsigned removals = 0;
};

// What happened to this scanner since the counts were cleared.
Presence presence(const std::string& scanner);
void clear_presence();

// The device-event callback that counts.
std::int32_t count_device_event(std::int32_t event, const char* name, std::int32_t plugged);

}  // namespace vyra_tool
