#include <algorithm>

#include "desktop.h"
#include "entry_point.h"
#include "modules.h"

namespace win32_double {
namespace {

Entry_point register_call{"RegisterClassExA"};
Entry_point unregister_call{"UnregisterClassA"};
Entry_point info_call{"GetClassInfoExA"};

bool is_called(const Window_class& window_class, LPCSTR name)
{
    const auto number = reinterpret_cast<uintptr_t>(name);
    return IS_INTRESOURCE(name) ? window_class.atom == number : same_name(window_class.name, name);
}

}  // namespace

std::shared_ptr<Window_class> find_class(LPCSTR name, HINSTANCE instance)
{
    if (instance == nullptr) {
        instance = executable_handle();
    }
    for (const auto& candidate : desktop().classes) {
        if (candidate->description.hInstance == instance && is_called(*candidate, name)) {
            return candidate;
        }
    }
    return nullptr;
}

namespace {

// Null, with the error that goes with it, for a class that there is not.
std::shared_ptr<Window_class> known_class(LPCSTR name, HINSTANCE instance)
{
    auto found = find_class(name, instance);
    if (found == nullptr) {
        SetLastError(ERROR_CLASS_DOES_NOT_EXIST);
    }
    return found;
}

}  // namespace
}  // namespace win32_double

using namespace win32_double;

ATOM RegisterClassExA(const WNDCLASSEXA* description)
{
    if (register_call.refused()) {
        return 0;
    }
    if (description->cbSize != sizeof(WNDCLASSEXA) || description->cbClsExtra < 0 || description->cbWndExtra < 0 ||
        description->lpszClassName == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const HINSTANCE instance = description->hInstance == nullptr ? executable_handle() : description->hInstance;
    const Desktop_lock lock(desktop().lock);
    if (find_class(description->lpszClassName, instance) != nullptr) {
        SetLastError(ERROR_CLASS_ALREADY_EXISTS);
        return 0;
    }
    auto added = std::make_shared<Window_class>();
    added->name = description->lpszClassName;
    added->atom = desktop().next_atom++;
    added->description = *description;
    added->description.hInstance = instance;
    added->description.lpszClassName = nullptr;
    added->description.lpszMenuName = nullptr;
    desktop().classes.push_back(added);
    return added->atom;
}

BOOL UnregisterClassA(LPCSTR name, HINSTANCE instance)
{
    if (unregister_call.refused()) {
        return FALSE;
    }
    const Desktop_lock lock(desktop().lock);
    const auto found = known_class(name, instance);
    if (found == nullptr) {
        return FALSE;
    }
    const auto& windows = desktop().windows;
    if (std::any_of(windows.begin(), windows.end(),
                    [&](const auto& entry) { return entry.second->window_class == found; })) {
        SetLastError(ERROR_CLASS_HAS_WINDOWS);
        return FALSE;
    }
    auto& classes = desktop().classes;
    classes.erase(std::find(classes.begin(), classes.end(), found));
    return TRUE;
}

BOOL GetClassInfoExA(HINSTANCE instance, LPCSTR name, WNDCLASSEXA* description)
{
    if (info_call.refused()) {
        return FALSE;
    }
    const Desktop_lock lock(desktop().lock);
    const auto found = known_class(name, instance);
    if (found == nullptr) {
        return FALSE;
    }
    *description = found->description;
    description->lpszClassName = name;
    return found->atom;
}
