// Scanners that are plugged in and pulled out.
#include <algorithm>

#include "log/log_exceptions.h"
#include "manager/device_name.h"
#include "manager/dispatch.h"
#include "manager/get_manager.h"

namespace kvs::brenvozulta {

void hot_plug_listener(std::int32_t event, void* driver_handle) noexcept
{
    if (event == driver_event_plugged) {
        log_printf(log_errors, "Device Plugged\n");
        const auto manager = get_manager();
        manager->set_device_detected(true);  // a reset that holds the manager lock waits for this
        manager->ManagePlugEvent(driver_handle);
    } else if (event == driver_event_unplugged) {
        log_printf(log_errors, "Device UnPlugged\n");
        const auto manager = get_manager();
        manager->set_device_detected(false);
        manager->ManageUnplugEvent(driver_handle);
    }
}

// Every arrival is listed and told, also of a scanner that is listed already; a removal only of one that is.
void brenvozulta_manager::ManagePlugEvent(void* driver_handle) noexcept
{
    log_printf(log_tracing, "ManagePlugEvent event\r\n");
    on_event("ManagePlugEvent", [&]() REQUIRES(manager_lock_) {
        DriverDeviceEntry record = {};
        const std::uint32_t result = QXDR_GetUsbInfo(driver_handle, &record);
        if (result != driver_ok) {
            log_printf(log_errors, "ManagePlugEvent:  QXDR_GetUsbInfo  Error=%d\r\n", result);
            return;
        }
        // By name: the scanner may come back with another driver handle.
        const std::string name = entry_name(record);
        for (const auto& [handle, device] : open_devices_) {
            if (device && equal_names(device->name(), name)) {
                status_.raise([&back = *device] { back.set_disconnected(false); });
                break;
            }
        }
        detected_devices_.push_back(record);
        // Read once: another thread's initialize exchanges it without the lock.
        if (const VyraDeviceEventCallback callback = device_event_callback_) {
            log_printf(log_tracing, "ManagePlugEvent event : sending plug callback for %s\r\n", name.c_str());
            tell_host(callback, name.c_str(), Plug::in);
        }
    });
}

// The device stays in the table: its handle is the host's until the host closes it.
void brenvozulta_manager::ManageUnplugEvent(void* driver_handle) noexcept
{
    log_printf(log_tracing, "ManageUnplugEvent event\r\n");
    on_event("ManageUnplugEvent", [&]() REQUIRES(manager_lock_) {
        for (const auto& [handle, device] : open_devices_) {
            if (device && device->driver_handle() == driver_handle) {
                status_.raise([&gone = *device] { gone.set_disconnected(true); });
                break;
            }
        }
        const auto record = find_detected(driver_handle);
        if (record == detected_devices_.end()) {
            return;  // the host was never told of this scanner
        }
        if (const VyraDeviceEventCallback callback = device_event_callback_) {
            const std::string name = entry_name(*record);
            log_printf(log_tracing, "ManageUnplugEvent event : sending unplug callback for %s\r\n", name.c_str());
            tell_host(callback, name.c_str(), Plug::out);
        }
        drop_detected(driver_handle);
    });
}

std::vector<DriverDeviceEntry>::iterator brenvozulta_manager::find_detected(void* driver_handle)
{
    return std::find_if(detected_devices_.begin(), detected_devices_.end(),
                        [&](const DriverDeviceEntry& entry) { return entry.driver_handle == driver_handle; });
}

// Looks the record up again: the host's callback may have initialized the library anew meanwhile.
void brenvozulta_manager::drop_detected(void* driver_handle)
{
    const auto record = find_detected(driver_handle);
    if (record != detected_devices_.end()) {
        detected_devices_.erase(record);
    }
}

// An exception of the host's callback ends here: the event is dealt with to its end, and the driver's thread never sees
// it.
void brenvozulta_manager::tell_host(VyraDeviceEventCallback callback, const char* name, Plug plug) noexcept
{
    log_exceptions([=] { callback(VYRA_EVENT_DEVICE, name, static_cast<int>(plug)); });
}

}  // namespace kvs::brenvozulta
