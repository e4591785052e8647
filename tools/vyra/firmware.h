// Loading firmware into an open scanner.
#pragma once

#include <cstdint>
#include <vector>

#include "restart.h"

namespace vyra_tool {

// Loads the image, shows that it is at work for as long as the scanner's driver takes, waits until the scanner has
// restarted, and returns what it then reports; the scanner is open again. Throws a Failure, before anything is written,
// when video runs on the scanner. A transfer that has begun is never interrupted.
Restarted update_firmware(Scanner& scanner, const std::vector<std::uint8_t>& image,
                          const Restart_patience& patience = {});

}  // namespace vyra_tool
