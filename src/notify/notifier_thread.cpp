#include "notify/notifier_thread.h"

#include <stdexcept>

#include "notify/notifier_window.h"

namespace kvs::brenvozulta {
namespace {

// The class belongs to the host's executable, as the window does.
HINSTANCE host_instance()
{
    return GetModuleHandleA(nullptr);
}

bool register_window_class(const char* class_name)
{
    WNDCLASSEXA window_class = {};
    static_assert(sizeof window_class == 80);
    window_class.cbSize = sizeof window_class;
    window_class.style = CS_HREDRAW | CS_VREDRAW;
    window_class.lpfnWndProc = notifier_window_proc;
    window_class.hInstance = host_instance();
    window_class.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<LONG_PTR>(COLOR_WINDOW));
    window_class.lpszClassName = class_name;
    return RegisterClassExA(&window_class) != 0;
}

// Never shown. A top-level window and not a message-only one, because power broadcasts reach top-level windows only.
HWND create_window(const char* class_name)
{
    return CreateWindowExA(WS_EX_APPWINDOW | WS_EX_CLIENTEDGE, class_name, "DevNotifWndSysNot", WS_OVERLAPPEDWINDOW,
                           CW_USEDEFAULT, 0, 120, 100, nullptr, nullptr, host_instance(), nullptr);
}

HWND open_notifier_window(const char* class_name)
{
    // A class of this name that exists already is used as it is, whatever its procedure does.
    const bool registered = register_window_class(class_name);
    if (const HWND window = create_window(class_name)) {
        return window;
    }
    // A start that fails leaves nothing behind.
    if (registered) {
        UnregisterClassA(class_name, host_instance());
    }
    throw std::runtime_error(device_notification_refused() ? "Could not register for devicenotifications!"
                                                           : "Could not create message window!");
}

}  // namespace

void notifier_thread_main(const char* class_name, const std::function<void(HWND)>& window_created)
{
    const HWND window = open_notifier_window(class_name);
    window_created(window);
    MSG message;
    // No window filter: WM_QUIT belongs to no window. -1 is an error and ends the loop as WM_QUIT does.
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    // Whoever has ended the loop: a window would end with its thread, its registration would not.
    if (IsWindow(window)) {
        DestroyWindow(window);
    }
}

void close_notifier_window(HWND window, DWORD thread_id, const char* class_name)
{
    SendMessageA(window, WM_CLOSE, 0, 0);
    // A class that existed already may have another procedure, which keeps the window or posts no quit.
    PostThreadMessageA(thread_id, WM_QUIT, 0, 0);
    UnregisterClassA(class_name, host_instance());
}

}  // namespace kvs::brenvozulta
