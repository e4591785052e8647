// What the library's status codes mean to a person, and what to try: the texts of vyra/status_text.h, with what the
// tool itself offers.
#pragma once

#include <string>

namespace vyra_tool {

struct Status_text {
    std::string name;  // "VYRA_DEVICE_UNAVAIL", or "driver result 7" for a result the library hands through
    std::string meaning;
    std::string advice;  // what to try
    std::string retry;   // whether the same command can succeed: "never", "soon", or "after" what the advice says
};

Status_text status_text(int code);
// "9005 VYRA_DEVICE_UNAVAIL (the scanner is not there, or not there any more)".
std::string code_text(int code);

}  // namespace vyra_tool
