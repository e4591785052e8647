// A program as a child process.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "support/child_system.h"

namespace test_support {

constexpr std::chrono::seconds child_patience{60};  // for what must happen; a test that waits so long has failed

class Child_process {
public:
    // The program and its arguments; see spawn().
    explicit Child_process(const std::vector<std::string>& command, const Environment& environment = {},
                           const std::string& input = {}, std::chrono::seconds patience = child_patience);
    // Ends the child by force when the test has not seen its end.
    ~Child_process();
    Child_process(const Child_process&) = delete;
    Child_process& operator=(const Child_process&) = delete;

    // Waits until the child has written the text; false when it ended, or a test's patience, without it.
    bool wait_for_output(const std::string& text);
    bool wait_for_error(const std::string& text);

    void interrupt() { test_support::interrupt(child_.process); }
    void close_console() { test_support::close_console(child_.process); }

    // The exit code, once the child has ended; ends it by force after a test's patience. What a sanitizer says on its
    // standard error fails the test, whatever the exit code.
    int wait();
    bool ended_by_force() const { return ended_by_force_; }

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
    const std::chrono::seconds patience_;
    Spawned child_;
    bool waited_ = false;
    bool ended_by_force_ = false;
};

// Whether a program's standard error holds what a sanitizer reports.
bool has_sanitizer_report(const std::string& text);

struct Result {
    int code;
    std::string out;
    std::string err;
    bool ended_by_force = false;
};

// Runs a program to its end.
Result run_program(const std::vector<std::string>& command, const Environment& environment = {},
                   const std::string& input = {}, std::chrono::seconds patience = child_patience);

}  // namespace test_support
