// A window of the host's, to which subscribers send messages while its thread waits inside the service.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>

namespace test_support {

// Belongs to the constructing thread. Messages are handled by `handle`.
class Host_window {
public:
    explicit Host_window(void (*handle)())
    {
        handle_message = handle;
        WNDCLASSEXA window_class = {};
        window_class.cbSize = sizeof window_class;
        window_class.lpfnWndProc = procedure;
        window_class.hInstance = GetModuleHandleA(nullptr);
        window_class.lpszClassName = name;
        RegisterClassExA(&window_class);
        window = CreateWindowExA(0, name, "", WS_OVERLAPPEDWINDOW, 0, 0, 1, 1, nullptr, nullptr,
                                 GetModuleHandleA(nullptr), nullptr);
    }
    ~Host_window()
    {
        DestroyWindow(window);
        UnregisterClassA(name, GetModuleHandleA(nullptr));
    }
    Host_window(const Host_window&) = delete;
    Host_window& operator=(const Host_window&) = delete;

    // From another thread: returns once the message has been handled.
    static LRESULT send() { return SendMessageA(window, WM_APP, 0, 0); }
    static constexpr LRESULT handled = 1;

private:
    static constexpr const char* name = "HOST_WINDOW";
    static inline std::atomic<HWND> window{nullptr};
    static inline std::atomic<void (*)()> handle_message{nullptr};

    static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM w_param, LPARAM l_param)
    {
        if (message != WM_APP) {
            return DefWindowProcA(handle, message, w_param, l_param);
        }
        handle_message.load()();
        return handled;
    }
};

}  // namespace test_support
