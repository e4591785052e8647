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

// The lines since the last call.
std::vector<Line> take();

}  // namespace captured_log
