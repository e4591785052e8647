// Events. Once set, one stays set until its handle is closed, or, without manual reset, until it has ended one wait.
#include "desktop.h"
#include "entry_point.h"

namespace win32_double {
namespace {

Entry_point create_call{"CreateEventA"};
Entry_point set_call{"SetEvent"};

struct Event : Waitable {
    explicit Event(bool stays) : Waitable(Kind::event), stays_set(stays) {}
    bool signalled() const override { return set; }
    DWORD take() override
    {
        set = stays_set;
        return WAIT_OBJECT_0;
    }

    const bool stays_set;
    bool set = false;
};

}  // namespace
}  // namespace win32_double

using namespace win32_double;

HANDLE CreateEventA(LPSECURITY_ATTRIBUTES security, BOOL manual_reset, BOOL initially_set, LPCSTR name)
{
    if (create_call.refused()) {
        return nullptr;
    }
    if (security != nullptr || initially_set || name != nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const Desktop_lock lock(desktop().lock);
    const auto handle = desktop().new_handle<HANDLE>();
    desktop().waitables[handle] = std::make_shared<Event>(manual_reset != FALSE);
    return handle;
}

BOOL SetEvent(HANDLE handle)
{
    if (set_call.refused()) {
        return FALSE;
    }
    const Desktop_lock lock(desktop().lock);
    const auto event = std::dynamic_pointer_cast<Event>(find_waitable(handle));
    if (event == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    event->set = true;
    wake_waits(*event);
    return TRUE;
}
