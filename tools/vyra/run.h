// The whole tool as one call, for its program and its tests.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace vyra_tool {

// Parses the arguments (without the program's name) and runs the command, which writes its results to a stream that
// stays the caller's; returns the exit code.
int run(const std::vector<std::string>& arguments, std::FILE* results);

}  // namespace vyra_tool
