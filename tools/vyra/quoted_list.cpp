#include "quoted_list.h"

namespace vyra_tool {

std::string quoted_list(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "\"" : ", \"") + name + "\"";
    }
    return text;
}

}  // namespace vyra_tool
