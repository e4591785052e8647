#include "notify/completion.h"

#include <boost/system/error_code.hpp>
#include <boost/thread/exceptions.hpp>

namespace kvs::brenvozulta {

completion::completion() : event_(CreateEventA(nullptr, TRUE, FALSE, nullptr))
{
    if (event_ == nullptr) {
        throw boost::thread_resource_error(boost::system::errc::resource_unavailable_try_again,
                                           "no event for the notifier thread");
    }
}

completion::~completion()
{
    CloseHandle(event_);
}

void completion::set()
{
    SetEvent(event_);
}

void completion::wait() const
{
    while (MsgWaitForMultipleObjectsEx(1, &event_, INFINITE, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE) ==
           WAIT_OBJECT_0 + 1) {
        MSG message;
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
    // Where messages cannot be waited for, the event still can.
    WaitForSingleObject(event_, INFINITE);
}

}  // namespace kvs::brenvozulta
