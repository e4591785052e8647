// Subscribes to USB and power events, plays the operating system's part towards the hidden window, and checks that all
// four events arrive, each once and in order.
#include "host.h"
#include "vyra/notify.h"
#include "win32.h"

namespace {

char window_class[] = "VYRABRENVOZULTA";
constexpr int vendor_id = 0x1A2B;
constexpr int product_id = 0x00FF;

// Bit by bit: subscribers run on the notifier thread, but each of them inside a message that this thread waits for.
enum : unsigned { arrival = 1, removal = 2, sleep = 4, resume = 8, all_events = 15 };
volatile unsigned received = 0;

void receive(unsigned event, bool as_expected, const char* line)
{
    const bool in_order = received == event - 1;
    received = report(as_expected && in_order, line) ? received | event : 0xFFFF;
}

void on_usb(int vendor, int product, UsbPlugEventType type)
{
    char line[64];
    wsprintfA(line, "usb event %d of %04X:%04X", static_cast<int>(type), vendor, product);
    receive(type == UsbDevicePlugged ? arrival : removal, vendor == vendor_id && product == product_id, line);
}

void on_power(SysPowerEventType type)
{
    char line[64];
    wsprintfA(line, "power event %d", static_cast<int>(type));
    receive(type == SysPowerSleep ? sleep : resume, true, line);
}

// This process's window: others on the machine may have one of the same class.
HWND find_window()
{
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, window_class, nullptr)) != nullptr) {
        uint32_t process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId()) {
            return window;
        }
    }
    return nullptr;
}

// The notifier's start does not wait for its window.
HWND wait_for_window()
{
    const uint64_t deadline = GetTickCount64() + 30000;
    HWND window = find_window();
    while (window == nullptr && GetTickCount64() < deadline) {
        Sleep(1);
        window = find_window();
    }
    return window;
}

void send_events(HWND window)
{
    Device_interface record = {};
    record.size = sizeof record;
    record.device_type = device_interface_type;
    wsprintfA(record.name, "\\\\?\\USB#VID_%04X&PID_%04X#7&1&0&2#{}", vendor_id, product_id);
    const auto address = reinterpret_cast<intptr_t>(&record);
    SendMessageA(window, wm_device_change, dbt_device_arrival, address);
    SendMessageA(window, wm_device_change, dbt_device_remove_complete, address);
    SendMessageA(window, wm_power_broadcast, pbt_suspend, 0);
    SendMessageA(window, wm_power_broadcast, pbt_resume_suspend, 0);
}

}  // namespace

bool check_notification()
{
    bool good = report(InitUsbNotifier(window_class), "notifier started");
    good = report(SubscribeToUsbEvent(vendor_id, product_id, on_usb), "subscribed to a USB device") && good;
    good = report(!SubscribeToUsbEvent(vendor_id, product_id, on_usb), "refused the same device again") && good;
    good = report(SubscribeToPowerEvent(on_power), "subscribed to sleep and resume") && good;
    const HWND window = wait_for_window();
    good = report(window != nullptr, "found the hidden window") && good;
    send_events(window);
    good = report(received == all_events, "all four events received") && good;
    good = report(UnSubscribeToUsbEvent(vendor_id, product_id), "unsubscribed from the USB device") && good;
    good = report(!UnSubscribeToUsbEvent(vendor_id, product_id), "refused to do so again") && good;
    good = report(UnsubscribeToPowerEvent(on_power), "unsubscribed from sleep and resume") && good;
    good = report(!UnsubscribeToPowerEvent(on_power), "refused to do so again") && good;
    good = report(TerminateUsbNotifier(window_class) && find_window() == nullptr, "notifier stopped") && good;
    return good;
}
