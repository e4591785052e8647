// The values that a window keeps: its own and the extra bytes of its class.
#include <cstring>

#include "desktop.h"
#include "entry_point.h"

namespace win32_double {
namespace {

Entry_point get_value_call{"GetWindowLongPtrA"};
Entry_point set_value_call{"SetWindowLongPtrA"};

LONG_PTR own_value(const Window& window, int index)
{
    switch (index) {
        case GWLP_WNDPROC:
            return reinterpret_cast<LONG_PTR>(window.procedure);
        case GWLP_HINSTANCE:
            return reinterpret_cast<LONG_PTR>(window.instance);
        case GWLP_HWNDPARENT:
            return reinterpret_cast<LONG_PTR>(window.parent);
        case GWLP_ID:
            return window.identifier;
        case GWL_STYLE:
            return window.style;
        case GWL_EXSTYLE:
            return window.extended_style;
        case GWLP_USERDATA:
            return window.user_data;
        default:
            SetLastError(ERROR_INVALID_INDEX);
            return 0;
    }
}

void set_own_value(Window& window, int index, LONG_PTR value)
{
    switch (index) {
        case GWLP_WNDPROC:
            window.procedure = reinterpret_cast<WNDPROC>(value);
            break;
        case GWLP_HINSTANCE:
            window.instance = reinterpret_cast<HINSTANCE>(value);
            break;
        case GWLP_ID:
            window.identifier = value;
            break;
        case GWL_STYLE:
            window.style = static_cast<DWORD>(value);
            break;
        case GWL_EXSTYLE:
            window.extended_style = static_cast<DWORD>(value);
            break;
        case GWLP_USERDATA:
            window.user_data = value;
            break;
        default:
            SetLastError(ERROR_INVALID_INDEX);
    }
}

// Null, with the last error set, when the index leaves no room for a value.
unsigned char* extra_value(Window& window, int index)
{
    const auto at = static_cast<size_t>(index);
    if (at + sizeof(LONG_PTR) <= window.extra.size()) {
        return &window.extra[at];
    }
    SetLastError(ERROR_INVALID_INDEX);
    return nullptr;
}

LONG_PTR value_of(Window& window, int index)
{
    if (index < 0) {
        return own_value(window, index);
    }
    LONG_PTR value = 0;
    if (const unsigned char* const bytes = extra_value(window, index)) {
        std::memcpy(&value, bytes, sizeof value);
    }
    return value;
}

}  // namespace
}  // namespace win32_double

using namespace win32_double;

LONG_PTR GetWindowLongPtrA(HWND handle, int index)
{
    if (get_value_call.refused()) {
        return 0;
    }
    const Desktop_lock lock(desktop().lock);
    const auto window = find_window(handle);
    return window == nullptr ? 0 : value_of(*window, index);
}

LONG_PTR SetWindowLongPtrA(HWND handle, int index, LONG_PTR value)
{
    if (set_value_call.refused()) {
        return 0;
    }
    const Desktop_lock lock(desktop().lock);
    const auto window = find_window(handle);
    if (window == nullptr) {
        return 0;
    }
    const LONG_PTR before = value_of(*window, index);
    if (index < 0) {
        set_own_value(*window, index, value);
    } else if (unsigned char* const bytes = extra_value(*window, index)) {
        std::memcpy(bytes, &value, sizeof value);
    }
    return before;
}
