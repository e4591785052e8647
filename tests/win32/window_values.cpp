// The values that a window keeps: its own and the extra bytes of its class.
#include <cstring>

#include "desktop.h"
#include "entry_point.h"

namespace win32_double {
namespace {

Entry_point get_value_call{"GetWindowLongPtrA"};

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
            return 0;
        default:
            SetLastError(ERROR_INVALID_INDEX);
            return 0;
    }
}

// Null, with the last error set, when the index leaves no room for a value.
unsigned char* extra_value(Window& window, int index)
{
    const auto at = static_cast<size_t>(index);
    if (at + sizeof(LONG_PTR) <= window.extra.size())
        return &window.extra[at];
    SetLastError(ERROR_INVALID_INDEX);
    return nullptr;
}

LONG_PTR value_of(Window& window, int index)
{
    if (index < 0)
        return own_value(window, index);
    LONG_PTR value = 0;
    if (const unsigned char* const bytes = extra_value(window, index))
        std::memcpy(&value, bytes, sizeof value);
    return value;
}

}  // namespace
}  // namespace win32_double

using namespace win32_double;

LONG_PTR GetWindowLongPtrA(HWND handle, int index)
{
    if (get_value_call.refused())
        return 0;
    const Desktop_lock lock(desktop().lock);
    const auto window = find_window(handle);
    return window == nullptr ? 0 : value_of(*window, index);
}
