// What differs between operating systems: threads, the end of the process, the environment.
#pragma once

#include <functional>
#include <string>

namespace brenvozulta_simulator {

// Runs body on a thread of its own. The library stays in memory until the thread has left it, so a host may unload it
// at any time. Throws std::system_error when there is no thread to be had.
void start_driver_thread(std::function<void()> body);

// Whether the process is ending and the system has ended every thread but the caller's, wherever it was: what they held
// stays locked, and what they were to do is never done.
bool other_threads_are_gone();

// The value of an environment variable in UTF-8; empty when there is none.
std::string environment_text(const char* name);

// Writes a line to standard error, and to where the system lets a program's debugger, or a viewer, read such lines: a
// host with windows has no standard error.
void report(const std::string& line);

}  // namespace brenvozulta_simulator
