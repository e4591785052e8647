// The wait for a change of the scanners' state.
#pragma once

#include <atomic>
#include <cstdint>

#include "locks/locks.h"

namespace kvs::brenvozulta {

// A change that is raised releases one waiter; one that nobody waits for is kept for the next wait, across close, open
// and initialize. The end of a session releases every waiter of that session and keeps nothing.
class status_wait {
public:
    using session = std::uint32_t;

    session current_session() const { return session_; }

    // Raises a change, after carrying out what changed under the mutex, so that a waiter sees it.
    template <class Change>
    void raise(Change change) EXCLUDES(mutex_)
    {
        const scoped_lock<plain_mutex> lock(mutex_);
        change();
        changed_ = true;
        if (waiters_ != 0) {
            condition_.notify_all();
        }
    }
    void raise() EXCLUDES(mutex_)
    {
        raise([] {});
    }

    void end_session() EXCLUDES(mutex_)
    {
        const scoped_lock<plain_mutex> lock(mutex_);
        ++session_;
        // A change that has released one of the waiters is theirs, and what comes from now on is not.
        if (waiters_ != 0) {
            changed_ = false;
            waiters_ = 0;
            condition_.notify_all();
        }
    }

    // Waits, without a limit, for a change or for the end of the session, which the caller has read before it looked
    // its device up: a session that ended in between is then not missed.
    void wait(session waiting_in) EXCLUDES(mutex_)
    {
        scoped_lock<plain_mutex> lock(mutex_);
        const Waiter waiter(*this, waiting_in);
        while (!changed_ && session_ == waiting_in) {
            condition_.wait(lock);
        }
        if (session_ == waiting_in) {
            changed_ = false;
        }
    }

private:
    friend struct status_wait_test_access;

    // Counts itself among the waiters of its session for as long as that lasts. Under the mutex.
    class Waiter {
    public:
        Waiter(status_wait& status, session waiting_in) : status_(status), waiting_in_(waiting_in) { count(1); }
        ~Waiter() { count(-1); }
        Waiter(const Waiter&) = delete;
        Waiter& operator=(const Waiter&) = delete;

    private:
        void count(int change) const
        {
            status_.mutex_.assert_held();  // it lives inside the scope of the lock in wait
            if (status_.session_ == waiting_in_) {
                status_.waiters_ += change;
            }
        }

        status_wait& status_;
        const session waiting_in_;
    };

    // Guards the writing of changed_, session_ and the devices' disconnected marks too, which all are read without it.
    // The manager lock is taken before it, never after; nothing is taken inside it.
    plain_mutex mutex_ ACQUIRED_AFTER(lock_order::inside_close);
    condition condition_;
    std::atomic<bool> changed_{false};
    std::atomic<session> session_{0};
    int waiters_ GUARDED_BY(mutex_) = 0;  // of the current session; those of earlier ones have been notified
};

}  // namespace kvs::brenvozulta
