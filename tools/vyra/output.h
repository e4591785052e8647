// Where the commands write: results as text or JSON to one stream, line by line; progress and errors to standard error.
#pragma once

#include <cstdio>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace vyra_tool {

class Failure;

// Why a command failed, as JSON.
nlohmann::ordered_json error_object(const Failure& failure);

class Output {
public:
    // results stays the caller's.
    Output(std::FILE* results, bool json) : results_(results), json_(json) {}

    bool json() const noexcept { return json_; }

    // A line of result, on its way to the reader when this returns. Throws a Failure when it cannot be written.
    void line(const std::string& text);
    // The same for a text of several lines.
    void lines(const std::string& text);
    void object(const nlohmann::ordered_json& value);

    // Says something to the person at the terminal that is no result.
    static void note(const std::string& text);
    // Why the command failed: as text or, with --json, as one object.
    void failure(const Failure& failure) const;

private:
    std::FILE* results_;
    bool json_;
};

// A line on the terminal that is overwritten as the work goes on; nothing is shown when standard error is no terminal.
class Progress {
public:
    Progress();
    ~Progress() { clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(const std::string& text);
    void clear();

private:
    bool terminal_;
    std::size_t shown_ = 0;  // characters on the terminal's line
};

}  // namespace vyra_tool
