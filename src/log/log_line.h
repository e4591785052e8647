// The making of a line.
#pragma once

#include <cstdarg>

namespace kvs::brenvozulta {

// Formats a message and writes it as a line, whatever its level. Never throws.
void log_vprintf(const char* format, va_list arguments) noexcept;

}  // namespace kvs::brenvozulta
