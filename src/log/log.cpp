#include "log/log.h"

#include <cstdarg>

#include "api/get_manager.h"
#include "log/log_line.h"
#include "manager/manager.h"

namespace kvs::brenvozulta {

// Nearly every line is one that is not written: nothing of the making of a line is in here.
void log_printf(int level, const char* format, ...) noexcept
{
    if (get_manager()->log_level() < level) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    log_vprintf(format, arguments);
    va_end(arguments);
}

}  // namespace kvs::brenvozulta
