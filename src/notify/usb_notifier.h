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
#include <boost/thread/condition_variable.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>

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
        bool starting = true;  // neither is there a window yet nor has the thread failed
        HWND window = nullptr;
        DWORD thread_id = 0;
    };
    using run_ptr = boost::shared_ptr<Run>;

    bool wait_for_other_stop(unique_lock& lock);
    void run_thread(const char* class_name, const run_ptr& run);
    void close_window(const char* class_name, unique_lock& lock);

    // Guards everything below. Held for moments only, never while a window, a thread or a subscriber is waited for; the
    // lock of the USB table may be taken inside it.
    boost::mutex mutex_;
    boost::condition_variable changed_;
    bool running_ = false;
    run_ptr run_;  // of the newest start; null when it got no thread
    // Of the same start. While a stop is under way, only that stop touches it, and without the mutex.
    boost::thread thread_;
    // While a stop is under way: the thread that stops, and the notifier thread for which it waits.
    bool stopping_ = false;
    boost::thread::id stopper_;
    boost::thread::id awaited_;
};

// The one notifier of the process.
usb_notifier& the_usb_notifier();

}  // namespace kvs::brenvozulta
