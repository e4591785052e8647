// The library's locks: Boost's, known to the compiler.
//
// What it sees is one function at a time, through what the others declare. It does not see who calls through a pointer,
// so neither that a host's callback comes back with a recursive lock held nor what a subscriber takes; nor a holder
// that is handed to another function. Comments say so where it happens.
#pragma once

#include <emmintrin.h>

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/lock_types.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include "lifetime/process.h"
#include "locks/annotations.h"
#include "locks/lock_order.h"

namespace kvs::brenvozulta {

template <class System_lock>
class CAPABILITY("lock") known_lock {
public:
    // Waits as long as it takes, with one exception: the thread that holds the lock may have ended with the process,
    // wherever it was, and will never give it up. The lock is the caller's all the same, who is alone by then.
    void lock() ACQUIRE() NOT_ANALYSED
    {
        if (system_lock_.try_lock()) {
            return;
        }
        if (process_is_ending()) {
            orphaned_ = true;
            return;
        }
        system_lock_.lock();
    }
    void unlock() RELEASE() NOT_ANALYSED
    {
        if (!orphaned_) {
            system_lock_.unlock();
        }
    }
    bool try_lock() TRY_ACQUIRE(true) { return system_lock_.try_lock(); }
    // Tries again for some microseconds first: most often the lock is held by a call that is over sooner than the
    // system would put this thread to sleep and wake it. When the time is over in a process that is ending, the lock is
    // the caller's, as above: a host that tries until it is would never end.
    template <class Duration>
    bool try_lock_for(const Duration& limit) TRY_ACQUIRE(true)
    {
        for (int tries = 0; tries < 20; ++tries) {
            for (int pauses = 0; pauses < 8; ++pauses) {
                _mm_pause();
            }
            if (system_lock_.try_lock()) {
                return true;
            }
        }
        if (system_lock_.try_lock_for(limit)) {
            return true;
        }
        if (!process_is_ending()) {
            return false;
        }
        orphaned_ = true;
        return true;
    }

    // Does nothing: what the compiler cannot see here, its caller knows.
    void assert_held() const ASSERT_HELD() {}

private:
    System_lock system_lock_;
    bool orphaned_ = false;  // only ever written when there is one thread left
};

// Not named mutex: in this namespace the type would stand before a variable of that name, and a holder given the
// variable would be the declaration of a function.
using plain_mutex = known_lock<boost::mutex>;
using recursive_timed_mutex = known_lock<boost::recursive_timed_mutex>;

// Holds a lock to the end of the scope, save where it is given up in between.
template <class Lock>
class SCOPED_CAPABILITY scoped_lock {
public:
    explicit scoped_lock(Lock& lock) ACQUIRE(lock) : held_(lock) {}
    ~scoped_lock() RELEASE() = default;
    scoped_lock(const scoped_lock&) = delete;
    scoped_lock& operator=(const scoped_lock&) = delete;

    void lock() ACQUIRE() { held_.lock(); }
    void unlock() RELEASE() { held_.unlock(); }

private:
    boost::unique_lock<Lock> held_;
};

// Holds to the end of the scope what it is asked to try for.
template <class Lock>
class SCOPED_CAPABILITY tried_lock {
public:
    explicit tried_lock(Lock& lock) EXCLUDES(lock) : held_(lock, boost::defer_lock) {}
    ~tried_lock() RELEASE() = default;
    tried_lock(const tried_lock&) = delete;
    tried_lock& operator=(const tried_lock&) = delete;

    bool try_lock() TRY_ACQUIRE(true) { return held_.try_lock(); }
    template <class Duration>
    bool try_lock_for(const Duration& limit) TRY_ACQUIRE(true)
    {
        return held_.try_lock_for(limit);
    }

private:
    boost::unique_lock<Lock> held_;
};

// What a thread waits for with a lock given up meanwhile. Both kinds of lock can be: the condition variable takes a
// holder, which knows whether it has its lock again when the system refuses it.
class condition {
public:
    template <class Lock>
    void wait(scoped_lock<Lock>& held)
    {
        condition_.wait(held);
    }
    // The threads that waited have ended with the process, perhaps while they held the lock within the condition.
    void notify_all()
    {
        if (!process_is_ending()) {
            condition_.notify_all();
        }
    }

private:
    boost::condition_variable_any condition_;
};

}  // namespace kvs::brenvozulta
