// The lines of the library's own log, whatever several processes and threads have made of them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vyra_tool {

struct Log_entry {
    std::string time;  // "2026-11-16T02:37:44.123", local time; empty when it cannot be told
    std::optional<std::uint64_t> thread;
    std::string message;  // without its line end
    bool mixed = false;   // pieces of several lines stood between each other: time and thread may be another line's
};

// The status code in a message such as "open_device:    Error=9110: Error 9110 #1".
std::optional<int> status_in(const std::string& message);
// The driver's result in a message such as "--Error : QXDR_OpenDevice ret = 4 ".
std::optional<int> driver_result_in(const std::string& message);

// Reads a log piece by piece. A line is written in several pieces (time, blank, thread, message) without a lock between
// processes, and a process may end between two of them; what stands side by side belongs together, and what is left of
// a line is matched with the oldest line that lacks it.
class Log_parser {
public:
    using Sink = std::function<void(Log_entry)>;

    // The log tells no year: the latest one is taken in which the day has its weekday and is at most a day after today,
    // a local date as 20261116; the log may come from a computer of another time zone.
    explicit Log_parser(int today) : today_(today) {}

    // Reads what comes next. What follows the last line end is kept until the line is complete.
    void read(std::string_view bytes, const Sink& sink);
    // Reads what was kept as well: nothing more comes.
    void end(const Sink& sink);

private:
    struct Pending {
        Log_entry entry;
        unsigned age = 0;  // in lines that were completed since it began
    };

    void read_lines(std::string_view text, const Sink& sink);
    void take_time(std::string_view text);
    void take_thread(std::string_view text);
    void take_message(std::string_view text, const Sink& sink);

    const int today_;
    std::string rest_;
    std::vector<Pending> pending_;
    enum class Piece { none, time, blank, thread } last_ = Piece::none;  // blank: of the time before it
};

// Today's local date as 20261116.
int local_date();

}  // namespace vyra_tool
