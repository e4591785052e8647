// Start and stop of the notification service.
//
//              start                    window created
//   stopped ----------> running, no window ----------> running, events are delivered
//      ^  ^                    |                               |
//      |  +--------------------+ creation failed               |
//      +-------------------------------------------------------+ stop
#pragma once

#include <windows.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "locks/locks.h"
#include "notify/waiting.h"

namespace kvs::brenvozulta {

class usb_notifier {
public:
    bool start(const char* class_name) EXCLUDES(mutex_);
    bool stop(const char* class_name) EXCLUDES(mutex_);

private:
    // One start and its thread. A thread that was stopped from inside a subscriber may still be on its way out while
    // the next one runs, so it has its own.
    struct Run {
        completion settled;     // there is a window, or the thread has failed
        HWND window = nullptr;  // written before it is settled; null when there is none
        handle_owner thread;
        DWORD thread_id = 0;  // given to no other thread as long as `thread` is open
    };
    // A stop that is under way.
    struct Stop {
        DWORD stopper_id = 0;
        DWORD awaited_id = 0;  // the notifier thread; 0 when there is none
        handle_owner stopper;  // null when it cannot be had
        completion over;
    };
    struct Start;

    static DWORD WINAPI thread_main(LPVOID start);

    // The compiler does not follow a holder from one function into another: it takes the lock for held throughout.
    bool wait_for_other_stop(scoped_lock<plain_mutex>& lock) REQUIRES(mutex_) NOT_ANALYSED;
    void run_thread(const char* class_name, Run& run) EXCLUDES(mutex_);
    static void end_thread(const char* class_name, const Run& run, bool from_inside);
    void end_stop() EXCLUDES(mutex_);

    // Held for moments only, never while a window, a thread or a subscriber is waited for. The lock of the USB table
    // may be taken inside it.
    plain_mutex mutex_ ACQUIRED_AFTER(lock_order::inside_manager) ACQUIRED_BEFORE(lock_order::inside_notifier);
    bool running_ GUARDED_BY(mutex_) = false;
    boost::shared_ptr<Run> run_ GUARDED_BY(mutex_);    // null when not running, and when the start got no thread
    boost::shared_ptr<Stop> stop_ GUARDED_BY(mutex_);  // null when none is under way
};

// The one notifier of the process.
usb_notifier& the_usb_notifier();

}  // namespace kvs::brenvozulta
