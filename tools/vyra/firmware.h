// Loading firmware into an open scanner.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "restart.h"

namespace vyra_tool {

class Output;

// Loads the image, shows that it is at work for as long as the scanner's driver takes, waits until the scanner has
// restarted, and returns what it then reports; the scanner is open again. Throws a Failure, before anything is written,
// when video runs on the scanner or the user has interrupted. A transfer that has begun is never interrupted, but for
// the end that Windows makes of a program some seconds after its console was closed.
Restarted update_firmware(Scanner& scanner, const std::vector<std::uint8_t>& image,
                          const Restart_patience& patience = {});

// Says what an update has come to; throws a Failure when the scanner did not restart.
void report_update(const Scanner& scanner, const std::string& version_before, const Restarted& restarted,
                   Output& output);

}  // namespace vyra_tool
