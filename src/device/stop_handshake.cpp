#include "device/stop_handshake.h"

#include <boost/thread/lock_guard.hpp>

namespace kvs::brenvozulta {

using handshake_lock = boost::lock_guard<boost::mutex>;

void Stop_handshake::renew()
{
    boost::promise<int> fresh;
    const handshake_lock lock(mutex_);
    promise_ = boost::move(fresh);
}

void Stop_handshake::wait()
{
    boost::future<int> seen;
    {
        const handshake_lock lock(mutex_);
        seen = promise_.get_future();
    }
    seen.get();
}

void Stop_handshake::fulfil()
{
    const handshake_lock lock(mutex_);
    promise_.set_value(0);
}

}  // namespace kvs::brenvozulta
