#include "failure.h"

#include <new>
#include <utility>

#include "status_text.h"
#include "vyra/status.h"

namespace vyra_tool {

const char* name_of(Cause cause)
{
    switch (cause) {
        case Cause::scanner_or_library:
            return "scanner_or_library";
        case Cause::wrong_usage:
            return "wrong_usage";
        case Cause::no_such_scanner:
            return "no_such_scanner";
        case Cause::scanner_gone:
            return "scanner_gone";
        case Cause::file:
            return "file";
        case Cause::dll:
            return "dll";
    }
    return "";
}

Failure::Failure(const std::string& what, int code, std::string advice)
    : Failure(what, code, std::move(advice),
              code == VYRA_DEVICE_UNAVAIL ? Cause::scanner_gone : Cause::scanner_or_library)
{
}

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

Failure failure_of(const std::exception& error)
{
    if (const auto* const failure = dynamic_cast<const Failure*>(&error)) {
        return *failure;
    }
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
        return {"out of memory", "close other programs and try again"};
    }
    return {error.what(), "report it as a fault of this tool"};
}

void check(int status, const std::string& what)
{
    if (status == VYRA_SCN_UNAVAILABLE) {
        // The tool opens a scanner once, and uses none that it has not opened.
        throw Failure("cannot " + what + ": the computer went to sleep", status,
                      "wake the computer, use it, and run the command again");
    }
    if (status != 0) {
        throw Failure("cannot " + what, status);
    }
}

}  // namespace vyra_tool
