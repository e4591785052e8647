// What the process holds of the system's things.
#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace manager_tests {

// Threads, handles, windows, window classes: how many of each there are now.
std::map<std::string, std::size_t> process_counts();

}  // namespace manager_tests
