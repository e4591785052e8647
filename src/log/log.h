// The diagnostic log: one text file in the machine-wide application-data folder, with one older generation.
//
// The log takes no lock. Lines of several threads may interleave piece by piece, and its failures are reported nowhere:
// a line that cannot be written is dropped.
#pragma once

#include <string>

namespace kvs::brenvozulta {

// The levels of the lines: a line is written when its level is at most the configured one. Level 2 is not used.
constexpr int log_tracing = 1;
constexpr int log_errors = 3;

// Writes one line when level is at most the manager's log level, formatted by wvsprintfA (no floating point, cut at
// 1,023 characters). The format brings its own line end. Never throws.
void log_printf(int level, const char* format, ...) noexcept;

// Writes one line with timestamp and thread in front. Returns 0, or -1 when not all of it was written.
int log_write(const char* line);

// Returns the descriptor of the log file, which it opens when it is not open; -1 when it cannot.
int log_open();

// Moves the log file in directory (which ends with a backslash) to the older generation and opens a new one, or leaves
// the log closed. While another thread's line is being written the file stays as it is. A file that another process has
// open stays too and is opened again, but its older generation is deleted.
void log_rotate(const char* directory);

// Closes the log file. The next line opens it again.
void log_close();

// The machine-wide application-data folder, empty when the system does not tell. The log's own sub-folder is appended
// to it.
std::string log_directory();

}  // namespace kvs::brenvozulta
