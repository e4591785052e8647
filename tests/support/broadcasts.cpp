#include "support/broadcasts.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "support/waiting.h"

namespace test_support {

HWND find_window(const char* window_class)
{
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, window_class, nullptr)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId()) {
            break;
        }
    }
    return window;
}

HWND wait_for_window(const char* window_class)
{
    HWND window = nullptr;
    EXPECT_TRUE(becomes_true([&] { return (window = find_window(window_class)) != nullptr; })) << window_class;
    return window;
}

Device_record::Device_record(std::string_view name)
    : Device_record(std::string(name) + '\0', name_offset + name.size() + 1,
                    static_cast<DWORD>(name_offset + name.size() + 1))
{
}

Device_record::Device_record(std::string_view bytes_at_name, std::size_t allocated, DWORD stated_size, DWORD type)
    : bytes_(new char[allocated])
{
    const std::array<DWORD, 3> header = {stated_size, type, 0};
    std::fill_n(bytes_.get(), allocated, '\xCC');
    std::memcpy(bytes_.get(), header.data(), std::min(sizeof header, allocated));
    if (allocated > name_offset) {
        std::memcpy(bytes_.get() + name_offset, bytes_at_name.data(),
                    std::min(bytes_at_name.size(), allocated - name_offset));
    }
}

LRESULT send_device_change(WPARAM event, std::string_view device_name, HWND window)
{
    const Device_record record(device_name);
    return SendMessageA(window, WM_DEVICECHANGE, event, record.address());
}

LRESULT send_power_event(WPARAM event, HWND window)
{
    return SendMessageA(window, WM_POWERBROADCAST, event, 0);
}

}  // namespace test_support
