// Windows: their creation and destruction, and what can be asked of them.
#include "desktop.h"
#include "entry_point.h"
#include "modules.h"
#include "stale_handles.h"

namespace win32_double {
namespace {

Entry_point create_call{"CreateWindowExA"};
Entry_point destroy_call{"DestroyWindow"};
Entry_point is_window_call{"IsWindow"};
Entry_point find_call{"FindWindowExA"};
Entry_point thread_of_call{"GetWindowThreadProcessId"};
Entry_point default_call{"DefWindowProcA"};

// The creation's messages in the system's order. The size queries come with a record of their size (the larger of the
// two), which stays as it is.
bool announce(Desktop_lock& lock, HWND window, const CREATESTRUCTA& creation)
{
    int64_t sizes[8] = {};
    const auto of_sizes = reinterpret_cast<LPARAM>(&sizes);
    const auto of_creation = reinterpret_cast<LPARAM>(&creation);
    send(lock, window, WM_GETMINMAXINFO, 0, of_sizes);
    if (send(lock, window, WM_NCCREATE, 0, of_creation) == 0) {
        return false;
    }
    send(lock, window, WM_NCCALCSIZE, FALSE, of_sizes);
    return send(lock, window, WM_CREATE, 0, of_creation) != -1;
}

}  // namespace
}  // namespace win32_double

using namespace win32_double;

HWND CreateWindowExA(DWORD extended_style, LPCSTR class_name, LPCSTR title, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID data)
{
    if (create_call.refused()) {
        return nullptr;
    }
    if (instance == nullptr) {
        instance = executable_handle();
    }
    Desktop_lock lock(desktop().lock);
    const auto window_class = find_class(class_name, instance);
    if (window_class == nullptr) {
        SetLastError(ERROR_CANNOT_FIND_WND_CLASS);
        return nullptr;
    }
    if (parent != nullptr && parent != HWND_MESSAGE && find_window(parent) == nullptr) {
        return nullptr;
    }
    const auto window = std::make_shared<Window>();
    window->handle = desktop().new_handle<HWND>();
    window->window_class = window_class;
    window->owner = own_queue();
    window->procedure = window_class->description.lpfnWndProc;
    window->instance = instance;
    window->parent = parent;
    window->style = style;
    window->extended_style = extended_style;
    window->identifier = reinterpret_cast<LONG_PTR>(menu);
    window->extra.resize(static_cast<size_t>(window_class->description.cbWndExtra));
    desktop().windows[window->handle] = window;
    const CREATESTRUCTA creation{
        data, instance, menu, parent, height, width, y, x, static_cast<LONG>(style), title, class_name, extended_style};
    if (announce(lock, window->handle, creation)) {
        return window->handle;
    }
    send(lock, window->handle, WM_NCDESTROY, 0, 0);
    remove_window(window->handle);
    return nullptr;
}

BOOL DestroyWindow(HWND handle)
{
    if (destroy_call.refused()) {
        return FALSE;
    }
    Desktop_lock lock(desktop().lock);
    const auto window = find_window(handle);
    if (window == nullptr) {
        note_stale_handle();
        return FALSE;
    }
    if (window->owner != own_queue()) {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    send(lock, handle, WM_DESTROY, 0, 0);
    send(lock, handle, WM_NCDESTROY, 0, 0);
    remove_window(handle);
    return TRUE;
}

BOOL IsWindow(HWND window)
{
    if (is_window_call.refused()) {
        return FALSE;
    }
    const Desktop_lock lock(desktop().lock);
    return find_window(window) != nullptr ? TRUE : FALSE;
}

HWND FindWindowExA(HWND parent, HWND after, LPCSTR class_name, LPCSTR title)
{
    if (find_call.refused()) {
        return nullptr;
    }
    const Desktop_lock lock(desktop().lock);
    for (auto found = desktop().windows.upper_bound(after); found != desktop().windows.end(); ++found) {
        const auto& [handle, window] = *found;
        if (window->parent != parent) {
            continue;
        }
        if (class_name != nullptr && !same_name(window->window_class->name, class_name)) {
            continue;
        }
        if (title != nullptr && !same_name(window->title, title)) {
            continue;
        }
        return handle;
    }
    return nullptr;
}

DWORD GetWindowThreadProcessId(HWND handle, LPDWORD process)
{
    if (thread_of_call.refused()) {
        return 0;
    }
    const Desktop_lock lock(desktop().lock);
    const auto window = find_window(handle);
    if (window == nullptr) {
        return 0;
    }
    if (process != nullptr) {
        *process = GetCurrentProcessId();
    }
    return window->owner->thread;
}

LRESULT DefWindowProcA(HWND window, UINT message, WPARAM, LPARAM lparam)
{
    if (default_call.refused()) {
        return 0;
    }
    if (message == WM_CLOSE) {
        DestroyWindow(window);
    }
    if (message != WM_NCCREATE) {
        return 0;
    }
    // Here, and nowhere else, a window gets its title.
    const char* const title = reinterpret_cast<const CREATESTRUCTA*>(lparam)->lpszName;
    const Desktop_lock lock(desktop().lock);
    if (const auto created = find_window(window)) {
        created->title = title == nullptr ? "" : title;
    }
    return TRUE;
}
