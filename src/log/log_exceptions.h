// The end of the road for exceptions.
#pragma once

#include <exception>

#include "log/log.h"

namespace kvs::brenvozulta {

constexpr const char* not_standard = "not a standard exception";

// Runs `action`. What it throws is logged and goes no further: above it stand frames that no exception may cross, the
// operating system's, the driver library's or the top of a thread of the host's process. Returns whether the action
// came to its end.
template <typename Action>
bool log_exceptions(Action&& action) noexcept
{
    try {
        action();
        return true;
    } catch (const std::exception& error) {
        log_printf(log_errors, "Exception : %s\r\n", error.what());
    } catch (...) {
        log_printf(log_errors, "Exception : %s\r\n", not_standard);
    }
    return false;
}

}  // namespace kvs::brenvozulta
