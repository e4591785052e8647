#include "notify/usb_notifier.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>
#include <utility>

#include "notify/log_exceptions.h"
#include "notify/notifier_thread.h"
#include "notify/usb_subscriptions.h"
#include "vyra/notify.h"

namespace kvs::brenvozulta {

// Serialises starts and stops. False, at once, on a thread for which the stop under way itself waits: on the notifier
// thread inside a subscriber, and on the stopping thread when a message reaches it while it waits. Waiting there would
// never end.
bool usb_notifier::wait_for_other_stop(unique_lock& lock) const
{
    const boost::thread::id self = boost::this_thread::get_id();
    while (const auto other = stop_) {
        if (self == other->stopper || self == other->awaited) {
            return false;
        }
        lock.unlock();
        other->over.wait();
        lock.lock();
    }
    return true;
}

bool usb_notifier::start(const char* class_name)
{
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
    thread_ = boost::thread([=] { run_thread(class_name, run.get()); });
    run_ = run;
    return true;
}

void usb_notifier::run_thread(const char* class_name, Run* run)
{
    const bool ended_by_quit = log_exceptions([&] {
        notifier_thread_main(class_name, [&](HWND window) {
            run->window = window;
            run->thread_id = GetCurrentThreadId();
            run->settled.set();
        });
    });
    {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        // A failed thread leaves the notifier as a stop leaves it.
        if (!ended_by_quit && run == run_.get()) {
            running_ = false;
        }
    }
    run->settled.set();
    run->ended.set();
}

void usb_notifier::end_thread(const char* class_name, const Run* run, bool from_inside)
{
    if (run != nullptr) {
        // A window that does not exist yet cannot be closed, and its loop would never end. On the notifier thread
        // itself it does exist: only its messages lead here.
        if (!from_inside) {
            run->settled.wait();
        }
        if (run->window != nullptr) {
            close_notifier_window(run->window, run->thread_id, class_name);
        }
        if (!from_inside) {
            run->ended.wait();
        }
    }
    // A stop goes through with all its steps: an interruption would leave a thread that nobody waits for.
    const boost::this_thread::disable_interruption whole;
    if (thread_.joinable()) {
        thread_.join();
    }
}

void usb_notifier::end_stop()
{
    const boost::lock_guard<boost::mutex> lock(mutex_);
    stop_->over.set();
    stop_.reset();
}

bool usb_notifier::stop(const char* class_name)
{
    unique_lock lock(mutex_);
    if (!wait_for_other_stop(lock) || !running_) {
        return true;
    }
    // It takes memory and an event. A stop that cannot be had leaves the notifier running, for another try.
    const auto stop = boost::make_shared<Stop>();
    stop->stopper = boost::this_thread::get_id();
    stop->awaited = thread_.get_id();
    stop_ = stop;
    running_ = false;
    const boost::shared_ptr<Run> run = std::move(run_);
    lock.unlock();
    try {
        end_thread(class_name, run.get(), stop->stopper == stop->awaited);
    } catch (...) {
        // A thread cannot wait for itself: the stop came from a subscriber.
        end_stop();
        throw;
    }
    end_stop();
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
