#include "failure.h"

#include <utility>

#include "status_text.h"

namespace vyra_tool {

Failure::Failure(const std::string& what, int code, std::string advice, Cause cause)
    : std::runtime_error(what),
      code_(code),
      advice_(advice.empty() ? status_text(code).advice : std::move(advice)),
      cause_(cause)
{
}

Failure::Failure(const std::string& what, std::string advice, Cause cause)
    : std::runtime_error(what), advice_(std::move(advice)), cause_(cause)
{
}

void check(int status, const std::string& what)
{
    if (status != 0) {
        throw Failure("cannot " + what, status);
    }
}

}  // namespace vyra_tool
