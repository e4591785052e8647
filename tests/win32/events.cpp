// Events: made, set, waited for, alone or together with the messages that others send.
#include <chrono>

#include "desktop.h"
#include "entry_point.h"
#include "stale_handles.h"

namespace win32_double {
namespace {

Entry_point create_call{"CreateEventA"};
Entry_point set_call{"SetEvent"};
Entry_point close_call{"CloseHandle"};
Entry_point wait_call{"WaitForSingleObject"};
Entry_point message_wait_call{"MsgWaitForMultipleObjectsEx"};

// Null when there is no such event; the last error is then set.
std::shared_ptr<Event> find_event(HANDLE handle)
{
    const auto found = desktop().events.find(handle);
    if (found != desktop().events.end())
        return found->second;
    note_stale_handle();
    SetLastError(ERROR_INVALID_HANDLE);
    return nullptr;
}

// Whether `condition` came to hold in time. `changed` is notified when it may.
template <class Condition>
bool wait(Desktop_lock& lock, std::condition_variable& changed, DWORD milliseconds, Condition condition)
{
    if (milliseconds != INFINITE)
        return changed.wait_for(lock, std::chrono::milliseconds(milliseconds), condition);
    changed.wait(lock, condition);
    return true;
}

}  // namespace
}  // namespace win32_double

using namespace win32_double;

HANDLE CreateEventA(LPSECURITY_ATTRIBUTES security, BOOL manual_reset, BOOL initially_set, LPCSTR name)
{
    if (create_call.refused())
        return nullptr;
    if (security != nullptr || !manual_reset || initially_set || name != nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const Desktop_lock lock(desktop().lock);
    const auto handle = desktop().new_handle<HANDLE>();
    desktop().events[handle] = std::make_shared<Event>();
    return handle;
}

// Threads that wait for messages too wait at their queues.
BOOL SetEvent(HANDLE event)
{
    if (set_call.refused())
        return FALSE;
    const Desktop_lock lock(desktop().lock);
    const auto found = find_event(event);
    if (found == nullptr)
        return FALSE;
    found->set = true;
    test_bench::hand_over(found.get());
    found->changed.notify_all();
    for (const auto& [thread, queue] : desktop().queues)
        queue->wake.notify_all();
    return TRUE;
}

BOOL CloseHandle(HANDLE handle)
{
    if (close_call.refused())
        return FALSE;
    const Desktop_lock lock(desktop().lock);
    if (find_event(handle) == nullptr)
        return FALSE;
    desktop().events.erase(handle);
    return TRUE;
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds)
{
    if (wait_call.refused())
        return WAIT_FAILED;
    Desktop_lock lock(desktop().lock);
    const auto event = find_event(handle);
    if (event == nullptr)
        return WAIT_FAILED;
    if (!wait(lock, event->changed, milliseconds, [&] { return event->set; }))
        return WAIT_TIMEOUT;
    test_bench::take_over(event.get());
    return WAIT_OBJECT_0;
}

DWORD MsgWaitForMultipleObjectsEx(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD wake_mask, DWORD flags)
{
    if (message_wait_call.refused())
        return WAIT_FAILED;
    if (count != 1 || wake_mask != QS_SENDMESSAGE || flags != MWMO_INPUTAVAILABLE) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return WAIT_FAILED;
    }
    Desktop_lock lock(desktop().lock);
    const auto event = find_event(*handles);
    if (event == nullptr)
        return WAIT_FAILED;
    const auto queue = own_queue();
    if (!wait(lock, queue->wake, milliseconds, [&] { return event->set || !queue->sent.empty(); }))
        return WAIT_TIMEOUT;
    if (!event->set)
        return WAIT_OBJECT_0 + 1;
    test_bench::take_over(event.get());
    return WAIT_OBJECT_0;
}
