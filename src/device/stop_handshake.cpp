#include "device/stop_handshake.h"

#include <boost/chrono/duration.hpp>

#include "device/video_state.h"
#include "lifetime/process.h"

namespace kvs::brenvozulta {

using handshake_lock = scoped_lock<plain_mutex>;

Stop_handshake::Promise::Promise(Promise&& other) noexcept
    : promise_(boost::move(other.promise_)), future_(boost::move(other.future_)), settled_(other.settled_)
{
    other.settled_ = true;
}

Stop_handshake::Promise& Stop_handshake::Promise::operator=(Promise&& other) noexcept
{
    settle();  // before it is replaced: to break the old one would take memory
    promise_ = boost::move(other.promise_);
    future_ = boost::move(other.future_);
    settled_ = other.settled_;
    other.settled_ = true;
    return *this;
}

void Stop_handshake::Promise::fulfil()
{
    promise_.set_value(0);
    settled_ = true;
}

boost::future<int> Stop_handshake::Promise::take_future()
{
    if (!future_.valid()) {
        throw boost::future_already_retrieved();
    }
    return boost::move(future_);
}

void Stop_handshake::Promise::settle() noexcept
{
    if (!settled_) {
        fulfil();
    }
}

void Stop_handshake::begin(Video_data& video, Promise fresh)
{
    const handshake_lock lock(mutex_);
    video.video_state.exchange(VIDEO_RUNNING);
    promise_ = boost::move(fresh);
}

bool Stop_handshake::answer(Video_data& video)
{
    // The thread polls: to wait for the lock would take a system object, which may be refused.
    tried_lock<plain_mutex> lock(mutex_);
    if (!lock.try_lock()) {
        return false;
    }
    std::uint32_t requested = VIDEO_STOP_REQUESTED;
    if (!video.video_state.compare_exchange_strong(requested, VIDEO_STOPPED)) {
        return false;
    }
    promise_.fulfil();
    return true;
}

void Stop_handshake::fulfil()
{
    const handshake_lock lock(mutex_);
    promise_.fulfil();
}

void Stop_handshake::wait()
{
    boost::future<int> seen;
    {
        const handshake_lock lock(mutex_);
        seen = promise_.take_future();
    }
    // In steps only because nothing tells of the process's end.
    while (seen.wait_for(boost::chrono::milliseconds(100)) == boost::future_status::timeout) {
        if (process_is_ending()) {
            return;
        }
    }
    seen.get();
}

}  // namespace kvs::brenvozulta
