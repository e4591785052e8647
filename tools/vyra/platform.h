// What the tool needs of the operating system beyond the C++ library. platform_windows.cpp or platform_posix.cpp
// implements it.
#pragma once

#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace vyra_tool {

// Once it is made, the user's wish to end the program (Ctrl-C, a closed console, a request to terminate) is noted in
// interrupt.h instead of ending the process, so that a scanner in use is always stopped and closed. A second Ctrl-C
// ends the process there and then, in whatever a disk or a driver holds it up. Made by the program's first thread,
// before there are others, and kept to the program's end.
class Interrupt_listener {
public:
    Interrupt_listener();
    ~Interrupt_listener();
    Interrupt_listener(const Interrupt_listener&) = delete;
    Interrupt_listener& operator=(const Interrupt_listener&) = delete;

private:
    std::thread thread_;  // where the system has none for it
};

// A stream of the tool's own to where standard output went so far; standard output itself goes to standard error from
// now on. The library writes lines of its own to standard output, which would otherwise stand between the tool's
// results.
std::FILE* take_standard_output();

// Lets the console show text of this code page; returns the one of before, 0 where there is none.
unsigned exchange_console_code_page(unsigned code_page);

// The console shows UTF-8 while it lives, and then what it showed before: the command prompt goes on in it.
class Utf8_console {
public:
    Utf8_console() : before_(exchange_console_code_page(65001)) {}
    ~Utf8_console()
    {
        if (before_ != 0) {
            exchange_console_code_page(before_);
        }
    }
    Utf8_console(const Utf8_console&) = delete;
    Utf8_console& operator=(const Utf8_console&) = delete;

private:
    const unsigned before_;
};

bool is_terminal(std::FILE* stream);

// A line of the standard input without its end; what there is at the input's end. Blocks. Takes no lock of the C
// library's streams, which the end of the process needs.
std::string read_input_line();

// The folder for the data of all users' programs, in UTF-8; empty when there is none.
std::string program_data_folder();

// The program's arguments without its name, in UTF-8.
std::vector<std::string> program_arguments(int count, char** values);

}  // namespace vyra_tool
