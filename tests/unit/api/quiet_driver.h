// A driver library in the test's own program that allocates nothing, so that every allocation of a call is the
// library's. It has two scanners, "quiet 1" and "quiet 2", which deliver images when they are told to.
#pragma once

#include <cstdint>

namespace quiet_driver {

constexpr char first_scanner[] = "quiet 1";
constexpr char second_scanner[] = "quiet 2";

// Calls the registered hot-plug listener for the second scanner.
void announce(std::int32_t event);

// Calls the registered acquisition callback with an image of 4 x 4 pixels.
std::int32_t deliver();

bool is_capturing();

// Opened and not closed.
int open_scanners();

}  // namespace quiet_driver
