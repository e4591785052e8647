#include "device/stop_handshake.h"

#include <boost/chrono/duration.hpp>
#include <boost/thread/lock_guard.hpp>

#include "device/process_end.h"
#include "device/records.h"

namespace kvs::brenvozulta {

using handshake_lock = boost::lock_guard<boost::mutex>;

void Stop_handshake::begin(Video_data& video, Promise fresh)
{
    const handshake_lock lock(mutex_);
    video.video_state.exchange(VIDEO_RUNNING);
    promise_ = boost::move(fresh);
}

bool Stop_handshake::answer(Video_data& video)
{
    const handshake_lock lock(mutex_);
    std::uint32_t requested = VIDEO_STOP_REQUESTED;
    if (!video.video_state.compare_exchange_strong(requested, VIDEO_STOPPED)) {
        return false;
    }
    promise_.promise_.set_value(0);
    return true;
}

void Stop_handshake::fulfil()
{
    const handshake_lock lock(mutex_);
    promise_.promise_.set_value(0);
}

void Stop_handshake::wait()
{
    boost::future<int> seen;
    {
        const handshake_lock lock(mutex_);
        if (!promise_.future_.valid()) {
            throw boost::future_already_retrieved();
        }
        seen = boost::move(promise_.future_);
    }
    while (seen.wait_for(boost::chrono::milliseconds(100)) == boost::future_status::timeout) {
        if (process_is_ending()) {
            return;
        }
    }
    seen.get();
}

}  // namespace kvs::brenvozulta
