// Names of files on the command line.
#pragma once

#include <string>

namespace vyra_tool {

// Throws Wrong_usage for an empty name, and for one that Windows takes for a device however it goes on (NUL, con.png,
// C:\aux\x), where a file would vanish without a word. The same on every system, so that a script means the same on
// all.
void check_file_name(const std::string& name);

}  // namespace vyra_tool
