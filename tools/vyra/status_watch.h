// One open scanner whose status is waited for on a thread of its own. The library's status wait ends on every kind of
// change; what is reported is a status that differs from the one before.
#pragma once

#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "event_queue.h"
#include "session.h"

namespace vyra_tool {

class Status_watch {
public:
    Status_watch(const Library& library, Event_queue& events) : library_(library), events_(events) {}
    ~Status_watch() { close(); }
    Status_watch(const Status_watch&) = delete;
    Status_watch& operator=(const Status_watch&) = delete;

    // Opens the scanner, also one that was open before and came back, and waits for its status from now on. Says so and
    // goes without when it cannot be opened.
    void open(const std::string& name);
    // Whether this is the arrival, after it was opened last, of the scanner that is or was open, or, before there was
    // one, of the one that is waited for (an empty name: any).
    bool calls_for_opening(const Event& plug, const std::string& awaited) const;

private:
    struct Wait;

    void close();
    static void run(Wait& wait, std::uint32_t handle);

    const Library& library_;
    Event_queue& events_;
    std::string name_;
    std::chrono::steady_clock::time_point opened_{};
    int last_ = 0;  // of the scanner's statuses, while no thread waits for the next
    std::optional<Scanner> scanner_;
    std::shared_ptr<Wait> wait_;
    std::future<void> ended_;
    std::thread thread_;
};

}  // namespace vyra_tool
