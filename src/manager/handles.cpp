// Opening, closing, resetting and watching scanners by handle.
#include <algorithm>
#include <boost/chrono/duration.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/thread/thread.hpp>
#include <utility>

#include "manager/device_name.h"
#include "manager/dispatch.h"
#include "manager/scoped_value.h"

namespace kvs::brenvozulta {

namespace {

constexpr int detection_periods = 20;
constexpr boost::chrono::nanoseconds detection_period(100'000'000);

}  // namespace

std::int32_t brenvozulta_manager::open_device(const char* name, std::uint32_t* handle, std::uint8_t option) noexcept
{
    if (handle != nullptr) {
        *handle = VYRA_NO_HANDLE;
    }
    if (name == nullptr || handle == nullptr) {
        return refuse("open_device", VYRA_BAD_PARAMETER);
    }
    return locked("open_device", [&]() REQUIRES(manager_lock_) { return open_named_device(name, handle, option); });
}

std::int32_t brenvozulta_manager::open_named_device(const std::string& name, std::uint32_t* handle, std::uint8_t option)
{
    const std::int32_t refused = ready("open_device");
    if (refused != VYRA_OK) {
        return refused;
    }
    if (open_devices_.size() >= device_table::capacity) {
        return refuse("open_device", VYRA_BAD_SCANNER_IDX);
    }
    if (is_open(name)) {
        log_printf(log_errors, "open_device:    Error=%d: %s %s\r\n", VYRA_SCN_UNAVAILABLE,
                   vyra_error_text(VYRA_SCN_UNAVAILABLE), name.c_str());
        return VYRA_SCN_UNAVAILABLE;
    }
    const status_wait::session session = status_.current_session();
    const auto device = boost::make_shared<brenvozulta_device>();
    auto entry = device_table::make_entry(device);
    const std::int32_t status = device->open(name, option);
    if (status != VYRA_OK) {
        log_printf(log_errors, "open_device:    Error=%d\r\n", status);
        return status;
    }
    // The host may terminate the library when the driver, while it opens, tells of an event: what was opened went with
    // the driver, also when the library is initialized again by now.
    if (session != status_.current_session()) {
        return refuse("open_device", VYRA_NOT_INITIALIZED);
    }
    device->set_disconnected(false);
    // The number of open scanners, even when an open scanner has that handle: it is displaced. Hosts close in reverse
    // order of opening.
    const auto new_handle = static_cast<std::uint32_t>(open_devices_.size());
    open_devices_.store(new_handle, std::move(entry));
    *handle = new_handle;
    return VYRA_OK;
}

bool brenvozulta_manager::is_open(const std::string& name) const
{
    return std::any_of(open_devices_.begin(), open_devices_.end(),
                       [&](const auto& entry) { return entry.second && equal_names(entry.second->name(), name); });
}

std::int32_t brenvozulta_manager::close_device(std::uint32_t handle) noexcept
{
    return locked("close_device", [&]() REQUIRES(manager_lock_) { return close_open_device(handle); });
}

std::int32_t brenvozulta_manager::close_open_device(std::uint32_t handle)
{
    // A close inside a close: the host calls it when the driver, while it closes, tells of an event.
    if (closing_ != nullptr) {
        return refuse("close_device", VYRA_INTERNAL);
    }
    const scoped_lock<plain_mutex> lock(close_mutex_);
    return close_entry(handle);
}

std::int32_t brenvozulta_manager::close_entry(std::uint32_t handle)
{
    if (!initialized_) {
        return refuse("close_device", VYRA_NOT_INITIALIZED);
    }
    const auto* const entry = open_devices_.find(handle);
    if (entry == nullptr) {
        return refuse("close_device", VYRA_BAD_SCANNER_IDX);
    }
    const auto device = *entry;
    if (!device || device.get() == closing_) {
        return VYRA_OK;
    }
    const scoped_value<const brenvozulta_device*> closing(closing_, device.get());
    status_.raise();
    device->drop();  // before the driver is asked, which may wait for a callback that waits for requests
    const std::int32_t status = device->close();
    if (status != VYRA_OK) {
        log_printf(log_errors, "close_device:    Error=%d\r\n", status);
    }
    // An open from inside the driver's close may have given the handle to another scanner.
    const auto* const now = open_devices_.find(handle);
    if (now != nullptr && *now == device) {
        open_devices_.erase(handle);
    }
    return VYRA_OK;
}

std::int32_t brenvozulta_manager::reset_device(std::uint32_t handle) noexcept
{
    return on_device("reset_device", handle, Missing_device::silent, [&](brenvozulta_device& device) -> std::int32_t {
        device_detected_ = false;
        const std::int32_t status = device.reset(handle);
        if (status != VYRA_OK) {
            return status;
        }
        if (!wait_until_detected()) {
            log_printf(log_errors, "reset_device:    device->reset is OK but no device detected after 2000 ms \n");
            return VYRA_DEVICE_UNAVAIL;
        }
        return VYRA_OK;
    });
}

// The driver's plug event sets the flag before it asks for the manager lock, which is held here.
bool brenvozulta_manager::wait_until_detected() const
{
    for (int period = 0; period < detection_periods && !device_detected_; ++period) {
        boost::this_thread::sleep_for(detection_period);
    }
    return device_detected_;
}

device_table::device_owner brenvozulta_manager::look_up(std::uint32_t handle) const
{
    return open_devices_.look_up(handle);
}

std::int32_t brenvozulta_manager::get_status(std::uint32_t handle) noexcept
{
    return guarded([&]() -> std::int32_t {
        const status_wait::session session = status_.current_session();
        const std::int32_t refused = ready("get_status");
        if (refused != VYRA_OK) {
            return refused;
        }
        const auto device = look_up(handle);
        if (!device) {
            return VYRA_OK;
        }
        status_.wait(session);
        return device->disconnected() ? refuse("get_status", VYRA_DEVICE_UNAVAIL) : VYRA_OK;
    });
}

}  // namespace kvs::brenvozulta
