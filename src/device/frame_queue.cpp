#include "device/frame_queue.h"

#include <algorithm>
#include <cstring>

#include "locks/locks.h"
#include "vyra/status.h"

namespace kvs::brenvozulta {

namespace {

using data_lock = scoped_lock<data_mutex>;

// One sequence for all scanners; only numbers of one queue are ever compared.
std::atomic<std::uint32_t> next_frame_id{0};

auto has_status(Frame_status status)
{
    return [status](const Frame_data& frame) { return frame.frame_status == status; };
}

}  // namespace

std::int32_t Frame_queue::add_request(void* buffer, std::uint64_t context)
{
    const data_lock lock(data_mutex_);
    if (frames_.size() >= capacity) {
        return VYRA_TOO_MANY_FRAMES;
    }
    frames_.emplace_back(buffer, context, next_frame_id.fetch_add(1, std::memory_order_relaxed));
    frame_count_.store(frames_.size(), std::memory_order_release);
    if (frames_.size() == 1) {
        wake_waiter();
    }
    return VYRA_OK;
}

void Frame_queue::clear()
{
    const data_lock lock(data_mutex_);
    frames_.clear();
    frame_count_.store(0, std::memory_order_release);
}

void Frame_queue::retire()
{
    request_signal_.retire();
}

std::optional<Frame_data> Frame_queue::take_ready()
{
    const data_lock lock(data_mutex_);
    const auto ready = std::find_if(frames_.begin(), frames_.end(), has_status(FRAME_READY));
    if (ready == frames_.end()) {
        return std::nullopt;
    }
    ready->frame_status = FRAME_TAKEN;
    return *ready;
}

void Frame_queue::remove(std::uint32_t frame_id)
{
    const data_lock lock(data_mutex_);
    const auto has_id = [frame_id](const Frame_data& frame) { return frame.frame_id == frame_id; };
    frames_.erase(std::remove_if(frames_.begin(), frames_.end(), has_id), frames_.end());
    frame_count_.store(frames_.size(), std::memory_order_release);
}

std::int32_t Frame_queue::fill(const unsigned char* image, std::size_t size)
{
    const data_lock lock(data_mutex_);
    const auto pending = std::find_if(frames_.begin(), frames_.end(), has_status(FRAME_PENDING));
    if (pending != frames_.end()) {
        pending->frame_status = FRAME_FILLING;
        std::memcpy(pending->buffer, image, size);
        pending->frame_status = FRAME_READY;
    }
    return VYRA_OK;
}

void Frame_queue::wait_for_request()
{
    if (frame_count_.load(std::memory_order_acquire) == 0) {
        request_signal_.wait();
    }
}

void Frame_queue::wake_waiter()
{
    request_signal_.raise();
}

}  // namespace kvs::brenvozulta
