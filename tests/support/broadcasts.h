// What the system tells the notification service's window, as the tests play it.
#pragma once

#include <windows.h>

#include <dbt.h>

#include <cstddef>
#include <memory>
#include <string_view>

namespace test_support {

// The class of the window that an initialized library has.
constexpr const char* library_window_class = "VYRABRENVOZULTA";

// This process's window of the class, or null: others that run at the same time may have one, too.
HWND find_window(const char* window_class = library_window_class);

// The same, once it is there: the service's start does not wait for it.
HWND wait_for_window(const char* window_class = library_window_class);

// A device-change record in a block of memory of exactly `allocated` bytes, so that reading behind it is found out.
class Device_record {
public:
    explicit Device_record(std::string_view name);
    Device_record(std::string_view bytes_at_name, std::size_t allocated, DWORD stated_size,
                  DWORD type = DBT_DEVTYP_DEVICEINTERFACE);
    LPARAM address() const { return reinterpret_cast<LPARAM>(bytes_.get()); }

private:
    std::unique_ptr<char[]> bytes_;
};

constexpr std::size_t name_offset = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);

// Each returns when the window's thread has handled the message.
LRESULT send_device_change(WPARAM event, std::string_view device_name, HWND window = find_window());
LRESULT send_power_event(WPARAM event, HWND window = find_window());

}  // namespace test_support
