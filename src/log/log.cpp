#include "log/log.h"

#include <cstdarg>

#include "log/log_line.h"
#include "log/log_settings.h"

namespace kvs::brenvozulta {

// Nearly every line is one that is not written: nothing of the making of a line is in here. The level is read without
// an order: a line that races with initialize may go by the old one or the new.
void log_printf(int level, const char* format, ...) noexcept
{
    if (log_settings.level.load(std::memory_order_relaxed) < level) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    log_vprintf(format, arguments);
    va_end(arguments);
}

}  // namespace kvs::brenvozulta
