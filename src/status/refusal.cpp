#include "status/refusal.h"

#include "log/log.h"
#include "status/error_text.h"

namespace kvs::brenvozulta {

std::int32_t refuse(const char* operation, std::int32_t status)
{
    log_printf(log_errors, "%s:    Error=%d: %s\r\n", operation, status, vyra_error_text(status));
    return status;
}

}  // namespace kvs::brenvozulta
