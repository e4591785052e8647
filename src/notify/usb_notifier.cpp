#include "notify/usb_notifier.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

#include "notify/log_exceptions.h"
#include "notify/notifier_thread.h"
#include "notify/usb_subscriptions.h"
#include "vyra/notify.h"

namespace kvs::brenvozulta {

// Serialises starts and stops. False, at once, on a thread for which the stop under way itself waits: on the notifier
// thread inside a subscriber, and on the stopping thread when a message reaches it while it waits for its own to be
// handled. Waiting there would never end.
bool usb_notifier::wait_for_other_stop(unique_lock& lock)
{
    const boost::thread::id self = boost::this_thread::get_id();
    while (stopping_) {
        if (self == stopper_ || self == awaited_) {
            return false;
        }
        changed_.wait(lock);
    }
    return true;
}

bool usb_notifier::start(const char* class_name)
{
    const boost::this_thread::disable_interruption whole;
    unique_lock lock(mutex_);
    // From inside a stop, a start counts as having come before it, when the notifier was running.
    if (!wait_for_other_stop(lock) || running_) {
        return true;
    }
    running_ = true;
    the_usb_subscriptions().clear();
    // A thread that failed, or was stopped from inside a subscriber, has been told to end and holds nothing that this
    // start needs. It is not waited for: its subscriber may be waiting for the caller.
    run_.reset();
    thread_.detach();
    const auto run = boost::make_shared<Run>();
    thread_ = boost::thread([=] { run_thread(class_name, run); });
    run_ = run;
    return true;
}

void usb_notifier::run_thread(const char* class_name, const run_ptr& run)
{
    const bool ended_by_quit = log_exceptions([&] {
        notifier_thread_main(class_name, [&](HWND window) {
            const boost::lock_guard<boost::mutex> lock(mutex_);
            run->window = window;
            run->thread_id = GetCurrentThreadId();
            run->starting = false;
            changed_.notify_all();
        });
    });
    const boost::lock_guard<boost::mutex> lock(mutex_);
    run->starting = false;
    // A failed thread leaves the notifier as a stop leaves it.
    if (!ended_by_quit && run == run_) {
        running_ = false;
    }
    changed_.notify_all();
}

// Gives the mutex up for as long as it waits for anything.
void usb_notifier::close_window(const char* class_name, unique_lock& lock)
{
    const run_ptr run = run_;
    if (run == nullptr) {
        return;
    }
    // A window that does not exist yet cannot be closed, and its loop would never end. On the notifier thread itself it
    // does exist: only its messages lead here.
    while (run->starting && stopper_ != awaited_) {
        changed_.wait(lock);
    }
    if (run->window != nullptr) {
        lock.unlock();
        close_notifier_window(run->window, run->thread_id, class_name);
        lock.lock();
    }
}

bool usb_notifier::stop(const char* class_name)
{
    // A stop goes through with all its steps: an interruption halfway would leave a window that nobody closes.
    const boost::this_thread::disable_interruption whole;
    unique_lock lock(mutex_);
    if (!wait_for_other_stop(lock) || !running_) {
        return true;
    }
    running_ = false;
    stopping_ = true;
    stopper_ = boost::this_thread::get_id();
    awaited_ = thread_.get_id();

    const auto finish = [this, &lock] {
        if (!lock.owns_lock()) {
            lock.lock();
        }
        stopping_ = false;
        changed_.notify_all();
    };
    try {
        close_window(class_name, lock);
    } catch (...) {
        // Waiting for the window takes memory. A stop that cannot be had leaves the notifier running, for another try.
        finish();
        running_ = true;
        throw;
    }
    lock.unlock();
    try {
        if (thread_.joinable()) {
            thread_.join();
        }
    } catch (...) {
        // A thread cannot wait for itself: the stop came from a subscriber.
        finish();
        throw;
    }
    finish();
    return true;
}

usb_notifier& the_usb_notifier()
{
    static auto* const notifier = new usb_notifier;
    return *notifier;
}

}  // namespace kvs::brenvozulta

bool InitUsbNotifier(char* windowClassName)
{
    return kvs::brenvozulta::the_usb_notifier().start(windowClassName);
}

bool TerminateUsbNotifier(char* windowClassName)
{
    return kvs::brenvozulta::the_usb_notifier().stop(windowClassName);
}
