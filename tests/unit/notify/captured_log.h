// Stands in for the diagnostic log: keeps the lines, so that tests can compare them.
#pragma once

#include <string>
#include <vector>

namespace captured_log {

struct Line {
    int level;
    std::string text;
};
inline bool operator==(const Line& a, const Line& b)
{
    return a.level == b.level && a.text == b.text;
}

using Lines = std::vector<Line>;

// The lines since the last call, which the test compares.
[[nodiscard]] Lines take();

// The same, waited for: there is at least one.
[[nodiscard]] Lines wait();

}  // namespace captured_log
