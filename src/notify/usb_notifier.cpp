#include "notify/usb_notifier.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/system/error_code.hpp>
#include <boost/thread/exceptions.hpp>
#include <memory>
#include <utility>

#include "lifetime/never_destroyed.h"
#include "lifetime/process.h"
#include "log/log_exceptions.h"
#include "notify/notifier_thread.h"
#include "notify/usb_subscriptions.h"

namespace kvs::brenvozulta {

// Serialises starts and stops. False, at once, on a thread for which the stop under way itself waits: on the notifier
// thread inside a subscriber, and on the stopping thread when a message reaches it while it waits. Waiting there would
// never end.
bool usb_notifier::wait_for_other_stop(scoped_lock<plain_mutex>& lock)
{
    const DWORD self = GetCurrentThreadId();
    while (const auto other = stop_) {
        if (self == other->stopper_id || self == other->awaited_id) {
            return false;
        }
        lock.unlock();
        if (other->stopper) {
            wait_for_any({other->over.handle(), other->stopper.get()});
        } else {
            wait_for_any({other->over.handle()});
        }
        lock.lock();
        if (stop_ == other) {
            stop_.reset();  // its thread has ended in the middle of it
        }
    }
    return true;
}

// What a new thread is given, and owns.
struct usb_notifier::Start {
    usb_notifier* notifier;
    const char* class_name;
    boost::shared_ptr<Run> run;
};

bool usb_notifier::start(const char* class_name)
{
    scoped_lock<plain_mutex> lock(mutex_);
    // From inside a stop, a start counts as having come before it, when the notifier was running.
    if (!wait_for_other_stop(lock) || running_) {
        return true;
    }
    running_ = true;
    the_usb_subscriptions().clear();
    // A thread that was stopped from inside a subscriber has been told to end and holds nothing that this start needs.
    // It is not waited for: its subscriber may be waiting for the caller.
    const auto run = boost::make_shared<Run>();
    auto start = std::make_unique<Start>(Start{this, class_name, run});
    pin_module();
    run->thread = own(CreateThread(nullptr, 0, thread_main, start.get(), 0, &run->thread_id));
    static_cast<void>(start.release());  // the thread's now
    run_ = run;
    return true;
}

DWORD WINAPI usb_notifier::thread_main(LPVOID start)
{
    const std::unique_ptr<Start> own_start(static_cast<Start*>(start));
    own_start->notifier->run_thread(own_start->class_name, *own_start->run);
    return 0;
}

void usb_notifier::run_thread(const char* class_name, Run& run)
{
    const Ending ending = log_exceptions([&] {
        notifier_thread_main(class_name, [&](HWND window) {
            run.window = window;
            run.settled.set();
        });
    });
    {
        const scoped_lock<plain_mutex> lock(mutex_);
        // A failed thread leaves the notifier as a stop leaves it.
        if (ending != Ending::whole && &run == run_.get()) {
            running_ = false;
            run_.reset();
        }
    }
    run.settled.set();
}

// Every wait here ends with the thread itself too: a subscriber may have ended it, and when the process ends, the
// system has.
void usb_notifier::end_thread(const char* class_name, const Run& run, bool from_inside)
{
    // A window that does not exist yet cannot be closed, and its loop would never end. On the notifier thread itself it
    // does exist: only its messages lead here.
    if (!from_inside) {
        wait_for_any({run.settled.handle(), run.thread.get()});
    }
    if (run.window != nullptr) {
        close_notifier_window(run.window, run.thread_id, class_name);
    }
    if (from_inside) {
        throw boost::thread_resource_error(boost::system::errc::resource_deadlock_would_occur,
                                           "boost thread: trying joining itself");
    }
    wait_for_any({run.thread.get()});
}

void usb_notifier::end_stop()
{
    const scoped_lock<plain_mutex> lock(mutex_);
    stop_->over.set();
    stop_.reset();
}

bool usb_notifier::stop(const char* class_name)
{
    scoped_lock<plain_mutex> lock(mutex_);
    if (!wait_for_other_stop(lock) || !running_) {
        return true;
    }
    // It takes memory and an event. A stop that cannot be had leaves the notifier running, for another try.
    const auto stop = boost::make_shared<Stop>();
    stop->stopper_id = GetCurrentThreadId();
    // Refused to a thread that acts for another user, whose end in the middle of the stop is then not seen.
    stop->stopper.reset(OpenThread(SYNCHRONIZE, FALSE, stop->stopper_id));
    stop->awaited_id = run_ ? run_->thread_id : 0;
    stop_ = stop;
    running_ = false;
    const boost::shared_ptr<Run> run = std::move(run_);
    lock.unlock();
    try {
        if (run) {
            end_thread(class_name, *run, stop->stopper_id == stop->awaited_id);
        }
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
    return never_destroyed<usb_notifier>();
}

}  // namespace kvs::brenvozulta
