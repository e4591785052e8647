// Names in a message.
#pragma once

#include <string>
#include <vector>

namespace vyra_tool {

// "RQ7-3050 #1", "RQ7-3050 #2": each in quotation marks.
std::string quoted_list(const std::vector<std::string>& names);

}  // namespace vyra_tool
