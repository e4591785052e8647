// The system's wide text from and to the tool's UTF-8. Windows alone has it.
#pragma once

#include <string>

namespace vyra_tool {

std::string to_utf8(const std::wstring& text);
std::wstring to_wide(const std::string& text);

}  // namespace vyra_tool
