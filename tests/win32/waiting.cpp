// Waiting for objects, alone or together with the messages that others send.
#include <algorithm>
#include <chrono>

#include "desktop.h"
#include "entry_point.h"
#include "stale_handles.h"
#include "threads.h"

namespace win32_double {
namespace {

Entry_point close_call{"CloseHandle"};
Entry_point wait_call{"WaitForSingleObject"};
Entry_point wait_several_call{"WaitForMultipleObjects"};
Entry_point message_wait_call{"MsgWaitForMultipleObjectsEx"};

// Whether `condition` came to hold in time. `changed` is notified when it may.
template <class Condition>
bool wait(Desktop_lock& lock, std::condition_variable& changed, DWORD milliseconds, Condition condition)
{
    if (milliseconds != INFINITE) {
        return changed.wait_for(lock, std::chrono::milliseconds(milliseconds), condition);
    }
    changed.wait(lock, condition);
    return true;
}

// What a wait answers that has ended by an object.
DWORD take(Waitable& object)
{
    test_bench::take_over(&object);
    return object.take();
}

// Waits at the thread's queue for the first of the objects, or for what else ends the wait (then: their number).
template <class Condition>
DWORD wait_for_one(DWORD count, const HANDLE* handles, DWORD milliseconds, Condition other)
{
    watch_thread_end();
    Desktop_lock lock(desktop().lock);
    std::vector<std::shared_ptr<Waitable>> objects;
    for (DWORD i = 0; i < count; ++i) {
        objects.push_back(find_waitable(handles[i]));
        if (objects.back() == nullptr) {
            return WAIT_FAILED;
        }
    }
    const auto signalled = [&] {
        return std::find_if(objects.begin(), objects.end(), [](const auto& object) { return object->signalled(); });
    };
    if (!wait(lock, own_queue()->wake, milliseconds, [&] { return signalled() != objects.end() || other(); })) {
        return WAIT_TIMEOUT;
    }
    const auto first = signalled();
    if (first == objects.end()) {
        return WAIT_OBJECT_0 + count;
    }
    return take(**first) + static_cast<DWORD>(first - objects.begin());
}

}  // namespace

std::shared_ptr<Waitable> find_waitable(HANDLE handle)
{
    const auto found = desktop().waitables.find(handle);
    if (found != desktop().waitables.end()) {
        return found->second;
    }
    note_stale_handle();
    SetLastError(ERROR_INVALID_HANDLE);
    return nullptr;
}

void wake_waits(Waitable& object)
{
    test_bench::hand_over(&object);
    object.changed.notify_all();
    for (const auto& [thread, queue] : desktop().queues) {
        queue->wake.notify_all();
    }
}

}  // namespace win32_double

using namespace win32_double;

BOOL CloseHandle(HANDLE handle)
{
    if (close_call.refused()) {
        return FALSE;
    }
    const Desktop_lock lock(desktop().lock);
    if (find_waitable(handle) == nullptr) {
        return FALSE;
    }
    desktop().waitables.erase(handle);
    return TRUE;
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds)
{
    if (wait_call.refused()) {
        return WAIT_FAILED;
    }
    watch_thread_end();
    Desktop_lock lock(desktop().lock);
    const auto object = find_waitable(handle);
    if (object == nullptr) {
        return WAIT_FAILED;
    }
    return wait(lock, object->changed, milliseconds, [&] { return object->signalled(); }) ? take(*object)
                                                                                          : WAIT_TIMEOUT;
}

DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL all, DWORD milliseconds)
{
    if (wait_several_call.refused()) {
        return WAIT_FAILED;
    }
    if (all) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return WAIT_FAILED;
    }
    return wait_for_one(count, handles, milliseconds, [] { return false; });
}

DWORD MsgWaitForMultipleObjectsEx(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD wake_mask, DWORD flags)
{
    if (message_wait_call.refused()) {
        return WAIT_FAILED;
    }
    if (wake_mask != QS_SENDMESSAGE || flags != MWMO_INPUTAVAILABLE) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return WAIT_FAILED;
    }
    return wait_for_one(count, handles, milliseconds, [] { return !own_queue()->sent.empty(); });
}
