// A host with a subscriber that ends the notifier thread from within: ended_thread_host usb|power. Then it terminates
// the library.
#include <windows.h>

#include <dbt.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "vyra/notify.h"
#include "vyra/vyra.h"

namespace {

// The library's notifier window in this process, waited for: a start does not.
HWND notifier_window()
{
    HWND window = nullptr;
    while (true) {
        window = FindWindowExA(nullptr, window, "VYRABRENVOZULTA", nullptr);
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId()) {
            return window;
        }
        if (window == nullptr) {
            Sleep(1);
        }
    }
}

void send_arrival(HWND window)
{
    const char name[] = "USB#VID_1A2B&PID_00FF#1";
    alignas(DEV_BROADCAST_DEVICEINTERFACE_A) char record[sizeof(DEV_BROADCAST_DEVICEINTERFACE_A) + sizeof name] = {};
    auto* const header = reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_A*>(record);
    header->dbcc_size = sizeof record;
    header->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    std::memcpy(header->dbcc_name, name, sizeof name);
    SendMessageA(window, WM_DEVICECHANGE, DBT_DEVICEARRIVAL, reinterpret_cast<LPARAM>(record));
}

void end_thread_of_usb_events(int, int, UsbPlugEventType)
{
    ExitThread(0);
}

void end_thread_of_power_events(SysPowerEventType)
{
    ExitThread(0);
}

// Returns once the notifier thread has ended.
bool end_notifier_thread(const std::string& subscriber)
{
    const HWND window = notifier_window();
    const HANDLE thread = OpenThread(SYNCHRONIZE, FALSE, GetWindowThreadProcessId(window, nullptr));
    if (subscriber == "usb") {
        SubscribeToUsbEvent(0x1A2B, 0x00FF, end_thread_of_usb_events);
        send_arrival(window);
    } else {
        SubscribeToPowerEvent(end_thread_of_power_events);
        SendMessageA(window, WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
    }
    const bool ended = WaitForSingleObject(thread, 20'000) == WAIT_OBJECT_0;
    CloseHandle(thread);
    return ended;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || VyraInitialize_N(nullptr, 0, 0) != VYRA_OK || !end_notifier_thread(argv[1])) {
        return 2;
    }
    std::fprintf(stderr, "VyraTerminate %d\n", VyraTerminate());
    return 0;
}
