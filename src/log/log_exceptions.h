// The end of the road for exceptions.
#pragma once

#include <exception>
#include <new>

#include "log/log.h"

namespace kvs::brenvozulta {

constexpr const char* not_standard = "not a standard exception";

// How an action ended that nothing leaves.
enum class Ending { whole, out_of_memory, failed };

// Runs `action`. What it throws is logged and goes no further: above it stand frames that no exception may cross, the
// host's, the operating system's, the driver library's or the top of a thread.
template <class Action>
Ending log_exceptions(Action&& action) noexcept
{
    try {
        action();
        return Ending::whole;
    } catch (const std::bad_alloc& error) {
        log_printf(log_errors, "Exception : %s\r\n", error.what());
        return Ending::out_of_memory;
    } catch (const std::exception& error) {
        log_printf(log_errors, "Exception : %s\r\n", error.what());
        return Ending::failed;
    } catch (...) {
        log_printf(log_errors, "Exception : %s\r\n", not_standard);
        return Ending::failed;
    }
}

}  // namespace kvs::brenvozulta
