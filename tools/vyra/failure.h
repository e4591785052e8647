// How a command fails: with exit code 1 and a message that says what failed, why, and what to try.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace vyra_tool {

class Failure : public std::runtime_error {
public:
    // The library answered code while the tool tried to do what; without advice the code's own stands.
    Failure(const std::string& what, int code, std::string advice = {});
    // Something failed outside the library.
    Failure(const std::string& what, std::string advice);

    const std::optional<int>& code() const noexcept { return code_; }
    const std::string& advice() const noexcept { return advice_; }

private:
    std::optional<int> code_;
    std::string advice_;
};

// A value on the command line that only the command itself can judge: exit code 2.
class Wrong_usage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Throws a Failure "cannot WHAT" unless status is 0.
void check(int status, const std::string& what);

}  // namespace vyra_tool
