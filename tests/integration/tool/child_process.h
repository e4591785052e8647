// The built tool as a child process.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "child_system.h"

namespace tool_tests {

class Child_process {
public:
    explicit Child_process(const std::vector<std::string>& arguments, const Environment& environment = {},
                           const std::string& input = {});
    // Ends the child by force when the test has not seen its end.
    ~Child_process();
    Child_process(const Child_process&) = delete;
    Child_process& operator=(const Child_process&) = delete;

    // Waits until the child has written the text; false when it ended, or a test's patience, without it.
    bool wait_for_output(const std::string& text);
    bool wait_for_error(const std::string& text);

    void interrupt() { tool_tests::interrupt(child_.process); }

    // The exit code, once the child has ended; ends it by force after a test's patience. What a sanitizer says on its
    // standard error fails the test, whatever the exit code.
    int wait();

    // What it has written so far, with "\n" as line end.
    std::string out() const;
    std::string err() const;

private:
    struct Stream {
        std::string text;
        bool ended = false;
        std::thread reader;
    };

    void read(System_handle pipe, Stream& stream);
    bool wait_for(const Stream& stream, const std::string& text);
    std::string text_of(const Stream& stream) const;

    // Guards both streams' text and end; nothing else is taken while it is held.
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    Stream out_;
    Stream err_;
    Spawned child_;
    bool waited_ = false;
};

// Whether a program's standard error holds what a sanitizer reports.
bool has_sanitizer_report(const std::string& text);

struct Result {
    int code;
    std::string out;
    std::string err;
};

// Runs the tool to its end.
Result run_tool(const std::vector<std::string>& arguments, const Environment& environment = {},
                const std::string& input = {});

}  // namespace tool_tests
