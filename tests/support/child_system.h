// What a child process needs of the operating system. child_windows.cpp or child_posix.cpp implements it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace test_support {

using System_handle = std::intptr_t;

struct Spawned {
    System_handle process;
    System_handle out;  // the reading ends of its standard output and standard error
    System_handle err;
};

using Environment = std::map<std::string, std::string>;

// The folder of the running program.
std::string program_folder();

// Starts a program, the first of the words (without ".exe"), with the others as its arguments, with the parent's
// environment and these variables, with the bytes of input on its standard input. Throws std::runtime_error when it
// cannot.
Spawned spawn(const std::vector<std::string>& command, const Environment& environment, const std::string& input);

// Bytes that the child wrote, waited for; 0 when it has closed its end.
std::size_t read_some(System_handle pipe, char* buffer, std::size_t size);
void close_pipe(System_handle pipe);

// Ctrl-C, and the end of the console that the process was started in.
void interrupt(System_handle process);
void close_console(System_handle process);
void end_by_force(System_handle process);
// The exit code, waited for; -1 for a process that did not end by itself. Gives the process up.
int wait_for_exit(System_handle process);

}  // namespace test_support
