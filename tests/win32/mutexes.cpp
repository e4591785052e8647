// Mutexes: owned by a thread, as often as it took them, until it gives them up or ends.
#include "desktop.h"
#include "entry_point.h"

namespace win32_double {
namespace {

Entry_point create_call{"CreateMutexA"};
Entry_point release_call{"ReleaseMutex"};

struct Mutex : Waitable {
    Mutex() : Waitable(Kind::mutex) {}
    bool signalled() const override { return owner == 0 || owner == GetCurrentThreadId(); }
    DWORD take() override
    {
        owner = GetCurrentThreadId();
        ++depth;
        const bool was_abandoned = abandoned;
        abandoned = false;
        return was_abandoned ? WAIT_ABANDONED : WAIT_OBJECT_0;
    }

    DWORD owner = 0;
    unsigned depth = 0;
    bool abandoned = false;  // its last owner ended without giving it up
};

}  // namespace

void abandon_mutexes()
{
    for (const auto& [handle, object] : desktop().waitables) {
        const auto mutex = std::dynamic_pointer_cast<Mutex>(object);
        if (mutex == nullptr || mutex->owner != GetCurrentThreadId()) {
            continue;
        }
        mutex->owner = 0;
        mutex->depth = 0;
        mutex->abandoned = true;
        wake_waits(*mutex);
    }
}

}  // namespace win32_double

using namespace win32_double;

HANDLE CreateMutexA(LPSECURITY_ATTRIBUTES security, BOOL initially_owned, LPCSTR name)
{
    if (create_call.refused()) {
        return nullptr;
    }
    if (security != nullptr || initially_owned || name != nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const Desktop_lock lock(desktop().lock);
    const auto handle = desktop().new_handle<HANDLE>();
    desktop().waitables[handle] = std::make_shared<Mutex>();
    return handle;
}

BOOL ReleaseMutex(HANDLE handle)
{
    if (release_call.refused()) {
        return FALSE;
    }
    const Desktop_lock lock(desktop().lock);
    const auto mutex = std::dynamic_pointer_cast<Mutex>(find_waitable(handle));
    if (mutex == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    if (mutex->owner != GetCurrentThreadId()) {
        SetLastError(ERROR_NOT_OWNER);
        return FALSE;
    }
    if (--mutex->depth == 0) {
        mutex->owner = 0;
        wake_waits(*mutex);
    }
    return TRUE;
}
