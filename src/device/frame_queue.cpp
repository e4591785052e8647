#include "device/frame_queue.h"

#include <algorithm>
#include <boost/chrono/duration.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <cstring>

#include "device/process_end.h"
#include "vyra/status.h"

namespace kvs::brenvozulta {

namespace {

using signal_lock = scoped_lock<recursive_mutex>;

// One sequence for all scanners; only numbers of one queue are ever compared.
std::atomic<std::uint32_t> next_frame_id{0};

}  // namespace

// Holds data_mutex_, for which a thread waits as long as it takes, with one exception: the end of the process may have
// caught the driver's thread in the middle of a copy, which will then never end. To the compiler that is held too: no
// other thread is left to guard against.
class SCOPED_CAPABILITY Frame_queue::data_lock {
public:
    explicit data_lock(recursive_timed_mutex& lock) ACQUIRE(lock) NOT_ANALYSED : lock_(lock)
    {
        bool held = lock_.try_lock();
        while (!held && !process_is_ending()) {
            held = lock_.try_lock_for(boost::chrono::milliseconds(100));
        }
    }
    ~data_lock() RELEASE() {}

private:
    tried_lock<recursive_timed_mutex> lock_;
};

Frame_queue::Frame_queue()
{
    frames_.reserve(capacity);
}

std::int32_t Frame_queue::add_request(void* buffer, std::uint64_t context)
{
    const data_lock data(data_mutex_);
    if (frames_.size() >= capacity) {
        return VYRA_TOO_MANY_FRAMES;
    }
    frames_.push_back(boost::make_shared<Frame_data>(buffer, context, next_frame_id++));
    frame_count_ = frames_.size();
    if (frames_.size() == 1) {
        wake_waiter();
    }
    return VYRA_OK;
}

void Frame_queue::clear()
{
    const data_lock data(data_mutex_);
    frames_.clear();
    frame_count_ = 0;
}

void Frame_queue::retire()
{
    const signal_lock signal(signal_mutex_);
    retired_ = true;
    request_cond_.notify_all();
}

boost::shared_ptr<Frame_data> Frame_queue::take_ready()
{
    const data_lock data(data_mutex_);
    for (const auto& frame : frames_) {
        if (frame->frame_status == FRAME_READY) {
            frame->frame_status = FRAME_TAKEN;
            return frame;
        }
    }
    return {};
}

void Frame_queue::remove(std::uint32_t frame_id)
{
    const data_lock data(data_mutex_);
    const auto has_id = [frame_id](const auto& frame) { return frame->frame_id == frame_id; };
    frames_.erase(std::remove_if(frames_.begin(), frames_.end(), has_id), frames_.end());
    frame_count_ = frames_.size();
}

std::int32_t Frame_queue::fill(const unsigned char* image, std::size_t size)
{
    const data_lock data(data_mutex_);
    for (const auto& frame : frames_) {
        if (frame->frame_status == FRAME_PENDING) {
            frame->frame_status = FRAME_FILLING;
            std::memcpy(frame->buffer, image, size);
            frame->frame_status = FRAME_READY;
            break;
        }
    }
    return VYRA_OK;
}

void Frame_queue::wait_for_request()
{
    if (frame_count_ != 0) {
        return;
    }
    signal_lock signal(signal_mutex_);
    while (!request_signalled_ && !retired_) {
        request_cond_.wait(signal);
    }
    request_signalled_ = false;
}

void Frame_queue::wake_waiter()
{
    const signal_lock signal(signal_mutex_);
    request_signalled_ = true;
    request_cond_.notify_one();
}

}  // namespace kvs::brenvozulta
