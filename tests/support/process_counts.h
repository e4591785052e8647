// What the process holds of the system's things.
#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace test_support {

using Process_counts = std::map<std::string, std::size_t>;

// Threads, handles, windows and window classes: how many of each there are now. Windows counts no windows and classes
// by itself: there it is whether there is one of this name.
Process_counts process_counts(const char* window_class);

// Whether nothing of `before` has become more, but for handles that are made once and late.
bool is_no_more_than(const Process_counts& before, const Process_counts& after);

}  // namespace test_support
