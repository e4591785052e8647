// The video requests of one open scanner.
#pragma once

#include <atomic>
#include <boost/container/static_vector.hpp>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "device/data_mutex.h"
#include "device/wake_signal.h"
#include "locks/lock_order.h"

namespace kvs::brenvozulta {

// A request's status only moves forward.
enum Frame_status : std::uint32_t {
    FRAME_PENDING = 0,  // waits for an image
    FRAME_FILLING = 1,  // is being copied into
    FRAME_READY = 2,    // holds an image
    FRAME_TAKEN = 3,    // is handed to the host
};

// One request: a buffer of the host's for one image.
class Frame_data {
public:
    Frame_data(void* host_buffer, std::uint64_t host_context, std::uint32_t id)
        : buffer(host_buffer), context(host_context), frame_id(id)
    {
    }

    std::uint32_t frame_status = FRAME_PENDING;
    void* buffer;  // the host's; never freed here
    std::uint64_t context;
    std::uint32_t frame_id;
};

// Host threads add and take requests; the driver's acquisition thread fills them and waits for them. Results come back
// in the order of submission. Nothing here logs, and once the queue is made nothing allocates.
class Frame_queue {
public:
    static constexpr std::size_t capacity = 8;  // counted whatever the requests' status

    // Throws boost::thread_resource_error when the system refuses what the waiter waits for.
    Frame_queue() = default;
    virtual ~Frame_queue() = default;
    Frame_queue(const Frame_queue&) = delete;
    Frame_queue& operator=(const Frame_queue&) = delete;

    // Appends a pending request: 0, or 9104 when the queue is full.
    std::int32_t add_request(void* buffer, std::uint64_t context);

    // Drops every request. An image that is being copied is waited for: no buffer is written after this.
    void clear();

    // Releases the waiter, now and in future: nothing will be requested any more, whatever the driver still delivers.
    void retire();

    // A copy of the oldest ready request, marked taken. It stays queued until it is removed. When none is ready but an
    // image is being copied, that one is waited for.
    std::optional<Frame_data> take_ready();

    void remove(std::uint32_t frame_id);

    // The number of the capture whose images are asked for. An image of an earlier one, whose callback may come late or
    // have waited meanwhile, is of another moment and perhaps of another size than the requests are for.
    std::uint32_t capture() const { return request_signal_.releases(); }

    // Ends a capture: its callbacks wait and begin to copy no more, and nothing of it is kept.
    void end_capture();

    // Copies an image of that capture into the oldest pending request; without one the image is lost. One image after
    // the other. Returns 0.
    std::int32_t fill(std::uint32_t capture, const unsigned char* image, std::size_t size);

    // Returns at once when requests are queued, else waits, without a limit, for the signal of a new request or of
    // wake_waiter, or until that capture ends or the queue is retired. A signal that came while nobody waited is kept
    // and releases one later wait.
    void wait_for_request(std::uint32_t capture);

    // Releases the waiter when nothing more will be requested.
    void wake_waiter();

private:
    using frame_list = boost::container::static_vector<Frame_data, capacity>;

    frame_list::iterator find(Frame_status status) REQUIRES(data_mutex_);
    void count_requests() REQUIRES(data_mutex_);

    // A copy begins with the request that it goes into, marked, and the next one waits for its end.
    std::optional<Frame_data> begin_copy(std::uint32_t capture);
    void end_copy();

    // Waits until there are more copies than those. False once the process ends.
    bool wait_for_copy(std::uint32_t copies) const;

    wake_signal request_signal_;

    // Guards every request's status too, and is not held while an image is copied: what is being copied into is marked.
    // Nothing is taken inside it.
    data_mutex data_mutex_ ACQUIRED_AFTER(lock_order::inside_close);
    frame_list frames_ GUARDED_BY(data_mutex_);

    // Written under the lock and read without it, so that a poll too early and an image too many disturb nobody: the
    // requests, those among them that are pending, those that are being copied into or ready, and the copies so far.
    std::atomic<std::size_t> frame_count_{0};
    std::atomic<std::size_t> pending_count_{0};
    std::atomic<std::size_t> due_count_{0};
    std::atomic<std::uint32_t> copies_{0};
};

}  // namespace kvs::brenvozulta
