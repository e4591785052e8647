#include "event_queue.h"

#include <utility>

namespace vyra_tool {

void Event_queue::push(Event event)
{
    {
        const std::lock_guard lock(mutex_);
        events_.push_back(std::move(event));
    }
    changed_.notify_one();
}

std::optional<Event> Event_queue::pop(std::chrono::milliseconds patience)
{
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, patience, [this] { return !events_.empty(); })) {
        return std::nullopt;
    }
    Event first = std::move(events_.front());
    events_.pop_front();
    return first;
}

void Event_queue::clear()
{
    const std::lock_guard lock(mutex_);
    events_.clear();
}

}  // namespace vyra_tool
