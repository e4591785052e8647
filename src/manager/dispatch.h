// The frames in which every operation of the manager runs.
#pragma once

#include <boost/chrono/duration.hpp>

#include "device/device.h"
#include "log/log.h"
#include "log/log_exceptions.h"
#include "manager/manager.h"
#include "status/error_text.h"
#include "status/refusal.h"

namespace kvs::brenvozulta {

constexpr boost::chrono::milliseconds manager_lock_limit(5000);

using manager_hold = tried_lock<recursive_timed_mutex>;

// Lets no exception out: the host may be written in any language. Locks of the body are released by then.
template <class Body>
std::int32_t brenvozulta_manager::guarded(Body body) noexcept
{
    std::int32_t status = VYRA_INTERNAL;
    const Ending ending = log_exceptions([&] { status = body(); });
    return ending == Ending::out_of_memory ? VYRA_OUT_OF_RESOURCE : status;
}

template <class Body>
std::int32_t brenvozulta_manager::locked(const char* operation, Body body) noexcept
{
    return guarded([&] {
        manager_hold lock(manager_lock_);
        if (!lock.try_lock() && !lock.try_lock_for(manager_lock_limit)) {
            return refuse(operation, VYRA_INTERNAL);
        }
        return session_change_ == Session_change::ending ? refuse(operation, VYRA_NOT_INITIALIZED) : body();
    });
}

// Whether device operations are accepted now: 0, or the status with which the operation was refused.
inline std::int32_t brenvozulta_manager::ready(const char* operation) const
{
    if (!initialized_) {
        return refuse(operation, VYRA_NOT_INITIALIZED);
    }
    return suspended_ ? refuse(operation, VYRA_SCN_UNAVAILABLE) : VYRA_OK;
}

// Runs an operation on the device that has the handle, which lives until the outermost operation has ended. The device
// logs its own failures.
template <class Operation>
std::int32_t brenvozulta_manager::on_device(const char* operation, std::uint32_t handle, Missing_device missing,
                                            Operation run) noexcept
{
    return locked(operation, [&]() REQUIRES(manager_lock_) -> std::int32_t {
        const std::int32_t refused = ready(operation);
        if (refused != VYRA_OK) {
            return refused;
        }
        const device_table::device_owner* const entry = open_devices_.find(handle);
        if (entry == nullptr) {
            return refuse(operation, VYRA_BAD_SCANNER_IDX);
        }
        brenvozulta_device* const device = entry->get();
        if (device == nullptr) {
            return missing == Missing_device::logged ? refuse(operation, VYRA_DEVICE_UNAVAIL) : VYRA_DEVICE_UNAVAIL;
        }
        const device_table::use use(open_devices_);
        return run(*device);
    });
}

// Runs the handling of an event, which is dropped when the manager is busy for too long or not initialized.
template <class Body>
void brenvozulta_manager::on_event(const char* event, Body body) noexcept
{
    guarded([&]() -> std::int32_t {
        manager_hold lock(manager_lock_);
        if (!lock.try_lock() && !lock.try_lock_for(manager_lock_limit)) {
            log_printf(log_errors, "%s lock:    Error=%d: %s\r\n", event, VYRA_INTERNAL,
                       vyra_error_text(VYRA_INTERNAL));
        } else if (!initialized_) {
            refuse(event, VYRA_NOT_INITIALIZED);
        } else {
            body();
        }
        return VYRA_OK;
    });
}

}  // namespace kvs::brenvozulta
