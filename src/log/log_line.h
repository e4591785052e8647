// The making of a line.
#pragma once

#include <cstdarg>

namespace kvs::brenvozulta {

// Formats a message and writes it as a line, whatever its level. Never throws.
void log_vprintf(const char* format, va_list arguments) noexcept;

// Writes one line with timestamp and thread in front. Returns 0, or -1 when not all of it was written.
int log_write(const char* line);

}  // namespace kvs::brenvozulta
