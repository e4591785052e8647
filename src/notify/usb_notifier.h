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
#include <boost/thread/lock_types.hpp>
#include <boost/thread/mutex.hpp>

#include "notify/waiting.h"

namespace kvs::brenvozulta {

class usb_notifier {
public:
    bool start(const char* class_name);
    bool stop(const char* class_name);

private:
    using unique_lock = boost::unique_lock<boost::mutex>;

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

    bool wait_for_other_stop(unique_lock& lock);
    void run_thread(const char* class_name, Run& run);
    static void end_thread(const char* class_name, const Run& run, bool from_inside);
    void end_stop();

    // Guards everything below. Held for moments only, never while a window, a thread or a subscriber is waited for; the
    // lock of the USB table may be taken inside it.
    boost::mutex mutex_;
    bool running_ = false;
    boost::shared_ptr<Run> run_;    // null when not running, and when the start got no thread
    boost::shared_ptr<Stop> stop_;  // null when none is under way
};

// The one notifier of the process.
usb_notifier& the_usb_notifier();

}  // namespace kvs::brenvozulta
