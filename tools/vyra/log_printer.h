// The lines of a log on their way to the output: recent ones alone, and one that comes again and again once.
#pragma once

#include <cstddef>
#include <deque>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "library_log.h"

namespace vyra_tool {

class Output;

class Log_printer {
public:
    // Keeps what is not older than since, in the form of the lines' own times (empty: everything), and of that, until
    // it is printed, the last tail lines (0: all).
    Log_printer(std::string since, std::size_t tail, Output& output);

    void add(Log_entry entry);
    // Prints and forgets what there is; what comes next is all printed.
    void print();
    // The same, but a line that was just printed and came again is counted until something else comes.
    void print_new();

    std::size_t left_out() const noexcept { return left_out_; }

private:
    struct Repeated_line {
        Log_entry entry;
        std::size_t times = 1;
        std::string until = {};
    };

    static std::string text_of(const Repeated_line& line);
    static nlohmann::ordered_json json_of(const Repeated_line& line);
    void print_first();

    const std::string since_;
    std::size_t tail_;
    Output& output_;
    bool recent_ = true;
    std::deque<Repeated_line> lines_;
    std::string printed_;  // the last message
    std::size_t left_out_ = 0;
};

}  // namespace vyra_tool
