// The lock of a frame queue's requests.
#pragma once

#include <atomic>

#include "locks/annotations.h"

namespace kvs::brenvozulta {

// Made for what it meets: it is nearly always free, and otherwise held for some instructions. Not recursive. Never
// fails, never allocates.
class CAPABILITY("lock") data_mutex {
public:
    data_mutex() = default;
    data_mutex(const data_mutex&) = delete;
    data_mutex& operator=(const data_mutex&) = delete;

    // Waits as long as it takes, with one exception: the end of the process may have caught a thread that has it. The
    // lock is then the caller's all the same.
    void lock() noexcept ACQUIRE() NOT_ANALYSED
    {
        if (!try_lock()) {
            wait();
        }
    }

    bool try_lock() noexcept TRY_ACQUIRE(true) { return !held_.exchange(true, std::memory_order_acquire); }

    void unlock() noexcept RELEASE() { held_.store(false, std::memory_order_release); }

private:
    void wait() noexcept;

    std::atomic<bool> held_{false};
};

}  // namespace kvs::brenvozulta
