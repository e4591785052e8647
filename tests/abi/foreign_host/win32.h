// The few declarations of the Windows headers that the foreign host needs: it is compiled without any, so that only
// this project's own headers stand between it and the library.
#pragma once

#include <stdint.h>

extern "C" {

struct HWND__;
using HWND = HWND__*;

__declspec(dllimport) void* GetStdHandle(uint32_t which);
__declspec(dllimport) int WriteFile(void* file, const void* bytes, uint32_t size, uint32_t* written, void* overlapped);
__declspec(dllimport) uint32_t GetCurrentProcessId();
__declspec(dllimport) uint64_t GetTickCount64();
__declspec(dllimport) void Sleep(uint32_t milliseconds);
[[noreturn]] __declspec(dllimport) void ExitProcess(uint32_t exit_code);

__declspec(dllimport) HWND FindWindowExA(HWND parent, HWND after, const char* class_name, const char* title);
__declspec(dllimport) uint32_t GetWindowThreadProcessId(HWND window, uint32_t* process);
__declspec(dllimport) intptr_t SendMessageA(HWND window, uint32_t message, uintptr_t w_param, intptr_t l_param);
__declspec(dllimport) int wsprintfA(char* text, const char* format, ...);

}  // extern "C"

constexpr uint32_t std_output = 0xFFFFFFF5;  // STD_OUTPUT_HANDLE
constexpr uint32_t wm_power_broadcast = 0x218;
constexpr uint32_t wm_device_change = 0x219;
constexpr uintptr_t pbt_suspend = 4;
constexpr uintptr_t pbt_resume_suspend = 7;
constexpr uintptr_t dbt_device_arrival = 0x8000;
constexpr uintptr_t dbt_device_remove_complete = 0x8004;

// DEV_BROADCAST_DEVICEINTERFACE_A with room for a name.
struct Device_interface {
    uint32_t size;
    uint32_t device_type;
    uint32_t reserved;
    uint8_t class_guid[16];
    char name[64];
};
constexpr uint32_t device_interface_type = 5;
static_assert(sizeof(Device_interface) == 28 + 64, "as the system lays it out");
