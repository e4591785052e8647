// The diagnostic log, as the rest of the library uses it: one text file in the machine-wide application-data folder,
// with one older generation. Its settings are in log_settings.h; how a line is made is in log_line.h, how the file is
// opened and rotated in log_file.h.
//
// The log takes no lock over a line. Lines of several threads may interleave piece by piece, and its failures are
// reported nowhere: a line that cannot be written is dropped.
#pragma once

namespace kvs::brenvozulta {

// The levels of the lines: a line is written when its level is at most the configured one. Level 2 is not used.
constexpr int log_tracing = 1;
constexpr int log_errors = 3;

// Writes one line when level is at most the configured one, formatted by wvsprintfA (no floating point, cut at 1,023
// characters). The format brings its own line end. Never throws.
void log_printf(int level, const char* format, ...) noexcept;

// Closes the log file. The next line opens it again.
void log_close();

}  // namespace kvs::brenvozulta
