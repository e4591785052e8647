// What the process holds of the system's things.
#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace manager_tests {

// Threads, handles, windows, window classes: how many of each there are now.
std::map<std::string, std::size_t> process_counts();

// Handles that are made once, but late: under Windows a lock gets its event when two threads first meet at it. A handle
// that is lost in every session, or in every hundredth, is many more.
std::size_t late_handles();

}  // namespace manager_tests
