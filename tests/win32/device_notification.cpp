// Registrations for device changes, and the changes themselves.
#include <cstring>

#include "dbt.h"
#include "desktop.h"
#include "entry_point.h"
#include "stale_handles.h"
#include "win32_double/control.h"

namespace win32_double {
namespace {

Entry_point register_call{"RegisterDeviceNotificationA"};
Entry_point unregister_call{"UnregisterDeviceNotification"};

constexpr size_t name_offset = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);

// A window is the only kind of recipient and a device interface the only kind of filter that there is.
DWORD error_of(HANDLE recipient, const void* filter, DWORD flags)
{
    const auto* const header = static_cast<const DEV_BROADCAST_HDR*>(filter);
    if ((flags & ~static_cast<DWORD>(DEVICE_NOTIFY_ALL_INTERFACE_CLASSES)) != DEVICE_NOTIFY_WINDOW_HANDLE ||
        find_window(static_cast<HWND>(recipient)) == nullptr || header == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    const bool fits = header->dbch_size >= name_offset && header->dbch_devicetype == DBT_DEVTYP_DEVICEINTERFACE;
    return fits ? ERROR_SUCCESS : ERROR_INVALID_DATA;
}

}  // namespace

size_t device_event(WPARAM event, const GUID& device_class, const std::string& device_name)
{
    // Storage of a type as strictly aligned as the record; the name runs on behind it.
    std::vector<DEV_BROADCAST_DEVICEINTERFACE_A> storage(2 +
                                                         device_name.size() / sizeof(DEV_BROADCAST_DEVICEINTERFACE_A));
    auto& record = storage.front();
    record.dbcc_size = static_cast<DWORD>(name_offset + device_name.size() + 1);
    record.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    record.dbcc_classguid = device_class;
    std::memcpy(reinterpret_cast<char*>(storage.data()) + name_offset, device_name.c_str(), device_name.size() + 1);

    Desktop_lock lock(desktop().lock);
    std::vector<HWND> recipients;
    for (const auto& [handle, registered] : desktop().notifications) {
        if (registered.all_classes || registered.device_class == device_class) {
            recipients.push_back(registered.window);
        }
    }
    for (const HWND window : recipients) {
        send(lock, window, WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(storage.data()));
    }
    return recipients.size();
}

}  // namespace win32_double

using namespace win32_double;

HDEVNOTIFY RegisterDeviceNotificationA(HANDLE recipient, LPVOID filter, DWORD flags)
{
    if (register_call.refused()) {
        return nullptr;
    }
    const Desktop_lock lock(desktop().lock);
    if (const DWORD error = error_of(recipient, filter, flags); error != ERROR_SUCCESS) {
        SetLastError(error);
        return nullptr;
    }
    Device_notification added;
    added.window = static_cast<HWND>(recipient);
    added.device_class = static_cast<const DEV_BROADCAST_DEVICEINTERFACE_A*>(filter)->dbcc_classguid;
    added.all_classes = (flags & DEVICE_NOTIFY_ALL_INTERFACE_CLASSES) != 0;
    const auto handle = desktop().new_handle<HDEVNOTIFY>();
    desktop().notifications[handle] = added;
    return handle;
}

BOOL UnregisterDeviceNotification(HDEVNOTIFY registration)
{
    if (unregister_call.refused()) {
        return FALSE;
    }
    const Desktop_lock lock(desktop().lock);
    if (desktop().notifications.erase(registration) == 1) {
        return TRUE;
    }
    note_stale_handle();
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
}
