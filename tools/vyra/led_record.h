// The LEDs of a scanner by the names that the command line uses.
#pragma once

#include <string>
#include <vector>

#include "vyra/vyra.h"

namespace vyra_tool {

// A record that shows one group (a, b or c) with its positions as the settings say, each "POSITION=STATE"; positions
// that are not named are off. Throws Wrong_usage, with the valid names, for anything else.
DevUI led_record(const std::string& group, const std::vector<std::string>& settings);

// A record that switches every LED off. It differs from the record after opening, so that the library sends it.
DevUI leds_off();

// The group that a record shows ("a", "b", "c", or "" for none) and the states of its positions.
struct Shown_leds {
    std::string group;
    std::vector<std::string> states;
};
Shown_leds shown_leds(const DevUI& record);

}  // namespace vyra_tool
