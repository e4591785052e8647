// How a command fails: with an exit code and a message that says what failed, why, and what to try.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace vyra_tool {

// By what a script tells failures apart. The values are the tool's exit codes; 2 is wrong usage.
enum class Cause {
    scanner_or_library = 1,
    no_such_scanner = 3,
    scanner_gone = 4,
    file = 5,
    dll = 6,
};

class Failure : public std::runtime_error {
public:
    // The library answered code while the tool tried to do what; without advice the code's own stands.
    Failure(const std::string& what, int code, std::string advice = {}, Cause cause = Cause::scanner_or_library);
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

// A value on the command line that only the command itself can judge: exit code 2.
class Wrong_usage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Throws a Failure "cannot WHAT" unless status is 0.
void check(int status, const std::string& what);

}  // namespace vyra_tool
