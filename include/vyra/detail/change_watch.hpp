// The wait for a change as an object. Part of vyra.hpp.
#ifndef VYRA_DETAIL_CHANGE_WATCH_HPP
#define VYRA_DETAIL_CHANGE_WATCH_HPP

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "basics.hpp"
#include "library.hpp"
#include "subscriptions.hpp"

namespace vyra {

// Hears what VyraGetStatus waits for: a scanner that comes or goes, the computer that goes to sleep or has resumed. Its
// wait has a limit and can be stopped, and each watch sees every change, whoever else waits.
class change_watch {
public:
    explicit change_watch(library& library)
        : scanners_(library, [this](const char*, bool) { note(); }), power_(library, [this](bool) { note(); })
    {
    }

    // Whether something has changed since the wait before this one, or since the watch was made; waits for it at most
    // so long, or until stop is given. What it was, the lists and scanner::is_unplugged tell. For one thread at a time.
    bool wait(std::chrono::milliseconds timeout, const stop_signal& stop = stop_signal::never())
    {
        using clock = std::chrono::steady_clock;
        constexpr std::chrono::milliseconds longest = std::chrono::hours(24 * 365);  // more overflows the clock
        constexpr std::chrono::milliseconds look_for_stop{10};
        const clock::time_point end = clock::now() + std::min(timeout, longest);
        std::unique_lock<std::mutex> lock(mutex_);
        while (!changed_ && !stop.requested() && clock::now() < end) {
            happened_.wait_until(lock, std::min(end, clock::now() + look_for_stop));
        }
        return std::exchange(changed_, false);
    }

private:
    void note()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        changed_ = true;
        happened_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable happened_;
    bool changed_ = false;
    // Last: they end first, and call nobody then.
    device_subscription scanners_;
    power_subscription power_;
};

}  // namespace vyra

#endif
