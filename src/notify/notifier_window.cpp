#include "notify/notifier_window.h"

#include <dbt.h>

#include <atomic>

#include "log/log_exceptions.h"
#include "notify/device_broadcast.h"
#include "notify/device_path.h"
#include "notify/power_subscriptions.h"
#include "notify/usb_subscriptions.h"

namespace kvs::brenvozulta {
namespace {

// GUID_DEVINTERFACE_USB_DEVICE, which the headers only declare.
constexpr GUID usb_device_interface = {0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

std::atomic<bool> registration_refused{false};

// The registration is kept in the window that it is for: while a thread that was stopped from inside a subscriber is
// still on its way out, the next one has a window already.
void keep_registration(HWND window, HDEVNOTIFY registration)
{
    SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(registration));
}

// Tried again at the window's destruction when its closing could not.
void end_device_notifications(HWND window)
{
    const auto registration = reinterpret_cast<HDEVNOTIFY>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (registration != nullptr && UnregisterDeviceNotification(registration)) {
        keep_registration(window, nullptr);
    }
}

// An exception must not cross the frames of the window's creation. A failure ends the creation instead, and the thread
// that asked for the window throws.
LRESULT register_for_device_notifications(HWND window)
{
    DEV_BROADCAST_DEVICEINTERFACE_A filter = {};
    static_assert(sizeof filter == 32);
    filter.dbcc_size = sizeof filter;
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    filter.dbcc_classguid = usb_device_interface;
    const HDEVNOTIFY registration = RegisterDeviceNotificationA(window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
    registration_refused = registration == nullptr;
    if (registration == nullptr) {
        return -1;
    }
    keep_registration(window, registration);
    return 0;
}

void handle_device_change(WPARAM event, LPARAM record)
{
    // Queries, pending removals and the rest are nobody's business, and their records are not looked at.
    if (event != DBT_DEVICEARRIVAL && event != DBT_DEVICEREMOVECOMPLETE) {
        return;
    }
    if (const auto device = find_usb_identifiers(broadcast_device_name(record))) {
        the_usb_subscriptions().dispatch(device->vendor, device->product,
                                         event == DBT_DEVICEARRIVAL ? UsbDevicePlugged : UsbDeviceUnplugged);
    }
}

void handle_power_broadcast(WPARAM event)
{
    if (event == PBT_APMSUSPEND || event == PBT_APMRESUMESUSPEND) {
        the_power_subscriptions().dispatch(event == PBT_APMSUSPEND ? SysPowerSleep : SysPowerResume);
    }
}

}  // namespace

// DefWindowProcA is deliberately never called: what is not listed here has no effect and the result 0.
LRESULT CALLBACK notifier_window_proc(HWND window, UINT message, WPARAM w_param, LPARAM l_param)
{
    switch (message) {
        case WM_NCCREATE:
            return 1;
        case WM_CREATE:
            return register_for_device_notifications(window);
        case WM_CLOSE:
            end_device_notifications(window);
            DestroyWindow(window);
            return 0;
        case WM_DESTROY:
            end_device_notifications(window);
            PostQuitMessage(0);
            return 0;
        case WM_DEVICECHANGE:
            log_exceptions([=] { handle_device_change(w_param, l_param); });
            return 0;
        case WM_POWERBROADCAST:
            log_exceptions([=] { handle_power_broadcast(w_param); });
            return 0;
        default:
            return 0;
    }
}

bool device_notification_refused()
{
    return registration_refused.exchange(false);  // a later creation may end for another reason
}

}  // namespace kvs::brenvozulta
