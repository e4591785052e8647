#include "device/frame_queue.h"

#include <algorithm>
#include <cstring>

#include "device/short_wait.h"
#include "locks/locks.h"
#include "vyra/status.h"

namespace kvs::brenvozulta {

namespace {

using data_lock = scoped_lock<data_mutex>;

// One sequence for all scanners; only numbers of one queue are ever compared.
std::atomic<std::uint32_t> next_frame_id{0};

}  // namespace

Frame_queue::frame_list::iterator Frame_queue::find(Frame_status status)
{
    return std::find_if(frames_.begin(), frames_.end(),
                        [status](const Frame_data& frame) { return frame.frame_status == status; });
}

void Frame_queue::count_requests()
{
    std::size_t pending = 0;
    std::size_t due = 0;
    for (const Frame_data& frame : frames_) {
        pending += frame.frame_status == FRAME_PENDING ? 1 : 0;
        due += frame.frame_status == FRAME_FILLING || frame.frame_status == FRAME_READY ? 1 : 0;
    }
    frame_count_.store(frames_.size(), std::memory_order_release);
    pending_count_.store(pending, std::memory_order_release);
    due_count_.store(due, std::memory_order_release);
}

bool Frame_queue::wait_for_copy(std::uint32_t copies) const
{
    for (short_wait wait; copies_.load(std::memory_order_acquire) == copies;) {
        if (!wait.again()) {
            return false;
        }
    }
    return true;
}

std::int32_t Frame_queue::add_request(void* buffer, std::uint64_t context)
{
    const data_lock lock(data_mutex_);
    if (frames_.size() >= capacity) {
        return VYRA_TOO_MANY_FRAMES;
    }
    frames_.emplace_back(buffer, context, next_frame_id.fetch_add(1, std::memory_order_relaxed));
    count_requests();
    if (frames_.size() == 1) {
        wake_waiter();
    }
    return VYRA_OK;
}

void Frame_queue::clear()
{
    // What is being copied into stays until it is whole, or until the process ends, when nobody is left to make it so.
    bool copying = true;
    for (bool ending = false; copying;) {
        std::uint32_t copies = 0;
        {
            const data_lock lock(data_mutex_);
            const auto goes = [ending](const Frame_data& frame) {
                return frame.frame_status != FRAME_FILLING || ending;
            };
            frames_.erase(std::remove_if(frames_.begin(), frames_.end(), goes), frames_.end());
            count_requests();
            copying = !frames_.empty();
            copies = copies_;
        }
        ending = copying && !wait_for_copy(copies);
    }
}

void Frame_queue::retire()
{
    request_signal_.retire();
}

std::optional<Frame_data> Frame_queue::take_ready()
{
    while (due_count_.load(std::memory_order_acquire) != 0) {
        std::uint32_t copies = 0;
        {
            const data_lock lock(data_mutex_);
            const auto ready = find(FRAME_READY);
            if (ready != frames_.end()) {
                ready->frame_status = FRAME_TAKEN;
                count_requests();
                return *ready;
            }
            copies = copies_;
            if (find(FRAME_FILLING) == frames_.end()) {
                break;
            }
        }
        if (!wait_for_copy(copies)) {
            break;
        }
    }
    return std::nullopt;
}

void Frame_queue::remove(std::uint32_t frame_id)
{
    const data_lock lock(data_mutex_);
    const auto has_id = [frame_id](const Frame_data& frame) { return frame.frame_id == frame_id; };
    frames_.erase(std::remove_if(frames_.begin(), frames_.end(), has_id), frames_.end());
    count_requests();
}

std::optional<Frame_data> Frame_queue::begin_copy(std::uint32_t capture)
{
    while (pending_count_.load(std::memory_order_acquire) != 0) {
        std::uint32_t copies = 0;
        {
            const data_lock lock(data_mutex_);
            const auto pending = find(FRAME_PENDING);
            if (pending == frames_.end() || capture != this->capture()) {
                break;
            }
            if (find(FRAME_FILLING) == frames_.end()) {
                pending->frame_status = FRAME_FILLING;
                count_requests();
                return *pending;
            }
            copies = copies_;
        }
        if (!wait_for_copy(copies)) {
            break;
        }
    }
    return std::nullopt;
}

void Frame_queue::end_copy()
{
    const data_lock lock(data_mutex_);
    const auto filling = find(FRAME_FILLING);
    if (filling != frames_.end()) {
        filling->frame_status = FRAME_READY;
    }
    copies_.store(copies_ + 1, std::memory_order_release);
}

std::int32_t Frame_queue::fill(std::uint32_t capture, const unsigned char* image, std::size_t size)
{
    const auto request = begin_copy(capture);
    if (request) {
        std::memcpy(request->buffer, image, size);
        end_copy();
    }
    return VYRA_OK;
}

void Frame_queue::end_capture()
{
    request_signal_.release();
}

void Frame_queue::wait_for_request(std::uint32_t capture)
{
    if (frame_count_.load(std::memory_order_acquire) == 0) {
        request_signal_.wait(capture);
    }
}

void Frame_queue::wake_waiter()
{
    request_signal_.raise();
}

}  // namespace kvs::brenvozulta
