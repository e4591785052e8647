// How a command fails: with an exit code and a message that says what failed, why, and what to try.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace vyra_tool {

// By what a script tells failures apart. The values are the tool's exit codes.
enum class Cause {
    scanner_or_library = 1,
    wrong_usage = 2,
    no_such_scanner = 3,
    scanner_gone = 4,
    file = 5,
    dll = 6,
};

// As JSON has it: "no_such_scanner".
const char* name_of(Cause cause);

class Failure : public std::runtime_error {
public:
    // The library answered code while the tool tried to do what; without advice the code's own stands, and without a
    // cause 9005 says that the scanner is gone.
    Failure(const std::string& what, int code, std::string advice = {});
    Failure(const std::string& what, int code, std::string advice, Cause cause);
    // Something failed outside the library.
    Failure(const std::string& what, std::string advice, Cause cause = Cause::scanner_or_library);

    const std::optional<int>& code() const noexcept { return code_; }
    const std::string& advice() const noexcept { return advice_; }
    Cause cause() const noexcept { return cause_; }

private:
    std::optional<int> code_;
    std::string advice_;
    Cause cause_;
};

// Something on the command line that makes no sense: nothing was touched.
class Wrong_usage : public Failure {
public:
    // Without advice the command's help is named.
    explicit Wrong_usage(const std::string& what, std::string advice = {})
        : Failure(what, std::move(advice), Cause::wrong_usage)
    {
    }
};

// What the tool says of an exception, its own or another's.
Failure failure_of(const std::exception& error);

// Throws a Failure "cannot WHAT" unless status is 0.
void check(int status, const std::string& what);

}  // namespace vyra_tool
