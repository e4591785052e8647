#include "device/wake_signal.h"

#include <boost/thread/exceptions.hpp>

namespace kvs::brenvozulta {

namespace {

// A wait of after a release can take the event that was meant for one of before it, which then looks by itself.
constexpr DWORD longest_sleep_ms = 1000;

}  // namespace

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

void wake_signal::release() noexcept
{
    ++releases_;
    if (waits_ != 0) {
        SetEvent(event_.get());
    }
}

void wake_signal::retire() noexcept
{
    retired_ = true;
    SetEvent(event_.get());
}

void wake_signal::wait(std::uint32_t releases) noexcept
{
    ++waits_;
    while (!raised_.exchange(false) && !is_over(releases)) {
        if (WaitForSingleObject(event_.get(), longest_sleep_ms) == WAIT_FAILED) {
            Sleep(1);  // where the system refuses the wait, the signal still comes
        }
    }
    if (--waits_ != 0 && is_over(releases)) {
        SetEvent(event_.get());  // for the next one that waits
    }
}

}  // namespace kvs::brenvozulta
