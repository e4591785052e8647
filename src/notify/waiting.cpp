#include "notify/waiting.h"

#include <boost/system/error_code.hpp>
#include <boost/thread/exceptions.hpp>

namespace kvs::brenvozulta {

handle_owner own(HANDLE handle)
{
    if (handle == nullptr) {
        throw boost::thread_resource_error();
    }
    return handle_owner(handle);
}

std::size_t wait_for_any(std::initializer_list<HANDLE> objects)
{
    const auto count = static_cast<DWORD>(objects.size());
    DWORD ended = WAIT_FAILED;
    while ((ended = MsgWaitForMultipleObjectsEx(count, objects.begin(), INFINITE, QS_SENDMESSAGE,
                                                MWMO_INPUTAVAILABLE)) == WAIT_OBJECT_0 + count) {
        // Whatever it finds, it first delivers what was sent; looking for that kind alone leaves the posted ones alone.
        MSG message;
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
    if (ended == WAIT_FAILED) {
        // Where messages cannot be waited for, the objects still can.
        ended = WaitForMultipleObjects(count, objects.begin(), FALSE, INFINITE);
    }
    return ended < WAIT_ABANDONED_0 ? ended - WAIT_OBJECT_0 : ended - WAIT_ABANDONED_0;
}

completion::completion() : event_(own(CreateEventA(nullptr, TRUE, FALSE, nullptr))) {}

dispatch_mutex::dispatch_mutex() : mutex_(own(CreateMutexA(nullptr, FALSE, nullptr))) {}

}  // namespace kvs::brenvozulta
