// The wait for a change of the scanners' state.
#pragma once

#include <atomic>
#include <boost/thread/condition_variable.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/lock_types.hpp>
#include <boost/thread/mutex.hpp>
#include <cstdint>

namespace kvs::brenvozulta {

// A change that is raised releases one waiter; one that nobody waits for is kept for the next wait, across close, open
// and initialize. The end of a session releases every waiter of that session and keeps nothing.
class status_wait {
public:
    using session = std::uint32_t;

    session current_session() const { return session_; }

    // Raises a change, after carrying out what changed under the mutex, so that a waiter sees it.
    template <class Change>
    void raise(Change change)
    {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        change();
        changed_ = true;
        condition_.notify_all();
    }
    void raise()
    {
        raise([] {});
    }

    void end_session()
    {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        ++session_;
        condition_.notify_all();
    }

    // Waits, without a limit, for a change or for the end of the session, which the caller has read before it looked
    // its device up: a session that ended in between is then not missed.
    void wait(session waiting_in)
    {
        boost::unique_lock<boost::mutex> lock(mutex_);
        while (!changed_ && session_ == waiting_in) {
            condition_.wait(lock);
        }
        changed_ = false;
    }

private:
    // Guards the writing of changed_, session_ and the devices' disconnected marks. The manager lock is taken before
    // it, never after; nothing is taken inside it.
    boost::mutex mutex_;
    boost::condition_variable condition_;
    std::atomic<bool> changed_{false};
    std::atomic<session> session_{0};
};

}  // namespace kvs::brenvozulta
