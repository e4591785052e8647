// Bringing the driver library up and down.
#include <algorithm>

#include "lifetime/process.h"
#include "log/log_settings.h"
#include "manager/dispatch.h"
#include "manager/scoped_value.h"
#include "notify/power_subscriptions.h"
#include "notify/usb_notifier.h"

namespace kvs::brenvozulta {

namespace {

constexpr std::uint32_t highest_log_level = 3;
constexpr std::int64_t default_log_size = 52'428'800;

using Session_change = brenvozulta_manager::Session_change;

// The notifier keeps the pointer, so the text lives as long as the library.
constexpr char notifier_class[] = "VYRABRENVOZULTA";

}  // namespace

// Off until the first initialize.
Log_settings log_settings;

brenvozulta_manager::brenvozulta_manager()
    : device_event_callback_(nullptr), initialized_(false), suspended_(false), device_detected_(false)
{
}

std::int32_t brenvozulta_manager::initialize(VyraDeviceEventCallback callback, std::uint32_t level,
                                             std::int32_t limit) noexcept
{
    return guarded([&] {
        const auto keep_settings = [&] {
            device_event_callback_ = callback;
            log_settings.level = level > highest_log_level ? 0 : static_cast<int>(level);
            log_settings.limit = limit < 1 ? default_log_size : limit;
        };
        manager_hold lock(manager_lock_);
        if (lock.try_lock()) {
            if (session_change_ != Session_change::none) {
                return refuse("initialize", VYRA_INTERNAL);
            }
            keep_settings();
            return bring_up();
        }
        // The settings are in place while another thread holds the lock, also when it cannot be had.
        keep_settings();
        if (!lock.try_lock_for(manager_lock_limit)) {
            return refuse("initialize", VYRA_INTERNAL);
        }
        return bring_up();
    });
}

std::int32_t brenvozulta_manager::bring_up()
{
    const scoped_value beginning(session_change_, Session_change::beginning);
    if (initialized_) {
        log_printf(log_tracing, "initialize:    clear current initialized api before the initialize\r\n");
        guarded([this] {
            manager_lock_.assert_held();  // since before this; what runs the function does not say so
            return shut_down();           // whatever comes of it
        });
    }
    if (QXDR_Initialize() != driver_ok) {
        return refuse("initialize", VYRA_INTERNAL);
    }
    initialized_ = true;  // also when the scanners cannot be listed: terminate then releases the driver
    pin_module();         // the driver learns callbacks from here on, when a scanner is opened at the latest

    DriverDeviceEntry entries[driver_list_capacity] = {};
    std::int32_t count = driver_list_capacity;
    std::uint32_t result = QXDR_GetDevicesList(&count, entries);
    if (result == driver_no_scanner) {
        result = driver_ok;  // a host may start before its scanners are plugged in
    }
    if (result != driver_ok) {
        log_printf(log_errors, "--Error :initialize -- >  QXDR_GetDevicesList ret = %d \n", result);
        return result == driver_scanner_busy ? VYRA_SCN_UNAVAILABLE : VYRA_INTERNAL;
    }
    detected_devices_.assign(entries, entries + std::clamp(count, 0, driver_list_capacity));

    result = QXDR_SetListenerCallbackHotPlug(hot_plug_listener);
    if (result != driver_ok) {
        log_printf(log_errors, "--Warning :initialize -- >  QXDR_SetListenerCallbackHotPlug ret = %d \n", result);
    }
    the_usb_notifier().start(notifier_class);
    the_power_subscriptions().subscribe(power_handler);
    return VYRA_OK;
}

std::int32_t brenvozulta_manager::terminate() noexcept
{
    return locked("terminate", [this]() REQUIRES(manager_lock_) {
        return session_change_ == Session_change::none ? shut_down() : refuse("terminate", VYRA_NOT_INITIALIZED);
    });
}

std::int32_t brenvozulta_manager::shut_down()
{
    if (!initialized_) {
        refuse("terminate", VYRA_NOT_INITIALIZED);
        log_close();
        return VYRA_NOT_INITIALIZED;
    }
    const scoped_value ending(session_change_, Session_change::ending);  // may stand inside a beginning
    // Each close shrinks the table: only the lower handles are closed in the driver, the rest are dropped with the
    // table. From inside a close the others are closed past its guard: this thread has the close mutex already.
    for (std::uint32_t handle = 0; handle < open_devices_.size(); ++handle) {
        if (closing_ == nullptr) {
            close_open_device(handle);
        } else {
            close_entry(handle);
        }
    }
    open_devices_.clear();
    status_.end_session();
    detected_devices_.clear();

    // A driver that is not released stays initialized here too, and its events go on: a later terminate tries again.
    if (QXDR_Release() != driver_ok) {
        refuse("terminate", VYRA_INTERNAL);
        log_close();
        return VYRA_INTERNAL;
    }
    the_power_subscriptions().unsubscribe(power_handler);
    the_usb_notifier().stop(notifier_class);
    // Last, so that a stop that is refused half done leaves a state from which initialize leads on.
    initialized_ = false;
    log_close();
    return VYRA_OK;
}

}  // namespace kvs::brenvozulta
