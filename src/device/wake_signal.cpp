#include "device/wake_signal.h"

#include <boost/thread/exceptions.hpp>

namespace kvs::brenvozulta {

wake_signal::wake_signal() : event_(CreateEventA(nullptr, FALSE, FALSE, nullptr), CloseHandle)
{
    if (!event_) {
        throw boost::thread_resource_error();
    }
}

void wake_signal::raise() noexcept
{
    if (raised_) {
        return;  // one with the signal that is kept
    }
    raised_ = true;
    if (waits_ != 0) {
        SetEvent(event_.get());
    }
}

void wake_signal::retire() noexcept
{
    retired_ = true;
    SetEvent(event_.get());
}

void wake_signal::wait() noexcept
{
    ++waits_;
    while (!consume()) {
        if (WaitForSingleObject(event_.get(), INFINITE) != WAIT_OBJECT_0) {
            Sleep(1);  // where the system refuses the wait, the signal still comes
        }
    }
    --waits_;
    if (retired_) {
        SetEvent(event_.get());  // for the next one that waits
    }
}

}  // namespace kvs::brenvozulta
