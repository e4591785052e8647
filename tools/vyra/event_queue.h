// What watch reports, from the library's threads to the one that prints.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace vyra_tool {

struct Event {
    enum class Kind { attached, plug, unplug, status, sleep, resume, usb_plug, usb_unplug };

    Kind kind;
    std::string subject = {};  // the scanner's name, or the USB pair as "VID:PID"
    int status = 0;
    std::chrono::system_clock::time_point time = std::chrono::system_clock::now();    // to be shown
    std::chrono::steady_clock::time_point moment = std::chrono::steady_clock::now();  // to be compared
};

class Event_queue {
public:
    void push(Event event);
    // The oldest event, waited for at most this long.
    std::optional<Event> pop(std::chrono::milliseconds patience);
    void clear();

private:
    // Guards events_. Taken in the library's callbacks, under locks of the library: the library must not be called
    // while it is held.
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Event> events_;
};

}  // namespace vyra_tool
