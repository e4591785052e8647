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

// A window's registration for device notifications. Its owner is the window that it is for, not an object beside it:
// while a thread that was stopped from inside a subscriber is still on its way out, the next one has a window already.
class device_registration {
public:
    explicit device_registration(HWND window) : window_(window) {}

    bool begin()
    {
        DEV_BROADCAST_DEVICEINTERFACE_A filter = {};
        static_assert(sizeof filter == 32);
        filter.dbcc_size = sizeof filter;
        filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
        filter.dbcc_classguid = usb_device_interface;
        const HDEVNOTIFY handle = RegisterDeviceNotificationA(window_, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
        if (handle != nullptr) {
            keep(handle);
        }
        return handle != nullptr;
    }

    // Without a registration, nothing. One that the system does not take back is kept for another try.
    void end()
    {
        const auto handle = reinterpret_cast<HDEVNOTIFY>(GetWindowLongPtrA(window_, GWLP_USERDATA));
        if (handle != nullptr && UnregisterDeviceNotification(handle)) {
            keep(nullptr);
        }
    }

private:
    void keep(HDEVNOTIFY handle) { SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(handle)); }

    const HWND window_;
};

// An exception must not cross the frames of the window's creation. A failure ends the creation instead, and the thread
// that asked for the window throws.
LRESULT register_for_device_notifications(HWND window)
{
    const bool registered = device_registration(window).begin();
    registration_refused = !registered;
    return registered ? 0 : -1;
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
            device_registration(window).end();
            DestroyWindow(window);
            return 0;
        case WM_DESTROY:
            device_registration(window).end();  // destroyed without a close, or closed and refused
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
