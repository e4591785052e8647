// The end of the road for exceptions on the notifier thread.
#pragma once

#include <exception>

#include "log/log.h"

namespace kvs::brenvozulta {

// Runs `action`. What it throws is logged and goes no further: above it stand the operating system's frames, which no
// exception may cross, or the top of a thread of the host's process. Returns whether the action came to its end.
template <typename Action>
bool log_exceptions(Action&& action)
{
    try {
        action();
        return true;
    } catch (const std::exception& error) {
        log_printf(3, "Exception : %s\r\n", error.what());
    } catch (...) {
        log_printf(3, "Exception : %s\r\n", "unknown");
    }
    return false;
}

}  // namespace kvs::brenvozulta
