#include "status_watch.h"

#include <mutex>

#include "failure.h"
#include "output.h"

namespace vyra_tool {
namespace {

using namespace std::chrono_literals;

constexpr auto end_patience = 500ms;

}  // namespace

// What the thread has of the watch. It outlives the watch when the library does not end its wait: a close that the
// library has no time for leaves it waiting, until the library is terminated or the process ends.
struct Status_watch::Wait {
    Wait(Event_queue& queue, std::string scanner) : events(&queue), name(std::move(scanner)) {}

    std::mutex mutex;     // guards events and last; taken before that of the events
    Event_queue* events;  // null when nobody wants to hear any more
    const std::string name;
    int last = VYRA_OK;
};

void Status_watch::open(const std::string& name)
{
    close();
    if (!same_name(name, name_)) {
        last_ = VYRA_OK;
    }
    name_ = name;
    opened_ = std::chrono::steady_clock::now();
    try {
        scanner_.emplace(library_, name);
    } catch (const Failure& failure) {
        Output::note(std::string("warning: ") + failure.what() + " (" + std::to_string(failure.code().value_or(0)) +
                     "): its status is not watched");
        return;
    }
    if (last_ != VYRA_OK) {  // it came back, and its thread ended before it could tell
        last_ = VYRA_OK;
        events_.push({Event::Kind::status, name_, VYRA_OK});
    }
    wait_ = std::make_shared<Wait>(events_, name_);
    std::packaged_task<void()> task([wait = wait_, handle = scanner_->handle()] { run(*wait, handle); });
    ended_ = task.get_future();
    thread_ = std::thread(std::move(task));
}

bool Status_watch::calls_for_opening(const Event& plug, const std::string& awaited) const
{
    const std::string& mine = name_.empty() ? awaited : name_;
    return (mine.empty() || same_name(plug.subject, mine)) && plug.moment > opened_;
}

void Status_watch::close()
{
    if (wait_) {
        const std::lock_guard lock(wait_->mutex);
        wait_->events = nullptr;
        last_ = wait_->last;
    }
    wait_.reset();
    scanner_.reset();  // ends the library's wait
    if (thread_.joinable()) {
        ended_.wait_for(end_patience) == std::future_status::ready ? thread_.join() : thread_.detach();
    }
}

void Status_watch::run(Wait& wait, std::uint32_t handle)
{
    while (true) {
        const int status = VyraGetStatus(handle);
        {
            const std::lock_guard lock(wait.mutex);
            if (wait.events == nullptr) {
                return;
            }
            if (status != VYRA_SCN_UNAVAILABLE && status != wait.last) {
                wait.last = status;
                wait.events->push({Event::Kind::status, wait.name, status});
            }
        }
        if (status == VYRA_SCN_UNAVAILABLE) {
            // The computer sleeps, which is reported as such: the library does not wait meanwhile.
            std::this_thread::sleep_for(100ms);
        }
    }
}

}  // namespace vyra_tool
