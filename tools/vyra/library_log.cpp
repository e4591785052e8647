#include "library_log.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <utility>

namespace vyra_tool {
namespace {

constexpr std::array<std::string_view, 7> weekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<std::string_view, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

constexpr std::size_t time_size = 23;    // "Mon Nov 16 02:37:44.123"
constexpr std::size_t thread_size = 21;  // "Thd             9284 "
constexpr unsigned oldest_pending = 8;   // lines; a line that lacks a piece for longer never gets it

template <std::size_t Count>
int place_of(const std::array<std::string_view, Count>& names, std::string_view name)
{
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

bool matches(std::string_view text, std::string_view pattern)
{
    return text.size() >= pattern.size() &&
           std::equal(pattern.begin(), pattern.end(), text.begin(), [](char expected, char given) {
               const bool digit = given >= '0' && given <= '9';
               return expected == '0' ? digit : expected == '_' ? digit || given == ' ' : given == expected;
           });
}

bool is_time(std::string_view text)
{
    return text.size() >= time_size && place_of(weekdays, text.substr(0, 3)) >= 0 && text[3] == ' ' &&
           place_of(months, text.substr(4, 3)) >= 0 && matches(text.substr(7), " _0 00:00:00.000");
}

bool is_thread(std::string_view text)
{
    return matches(text, "Thd _______________0 ");
}

std::uint64_t number(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    std::uint64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// 0 is Sunday.
int weekday_of(int year, int month, int day)
{
    const int shifted = month < 3 ? year - 1 : year;
    constexpr std::array<int, 12> offsets = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
    return (shifted + shifted / 4 - shifted / 100 + shifted / 400 + offsets[static_cast<std::size_t>(month) - 1] +
            day) %
           7;
}

// A day of the log is at most a day ahead of today: it may come from a computer of another time zone.
int year_of(int weekday, int month, int day, int today)
{
    const int latest = today / 10000;
    for (int year = latest + 1; year > latest - 28; --year) {  // the weekdays repeat after 28 years
        if (year * 10000 + month * 100 + day <= today + 1 && weekday_of(year, month, day) == weekday) {
            return year;
        }
    }
    return latest;
}

std::optional<int> number_behind(const std::string& message, std::string_view mark)
{
    const std::size_t at = message.find(mark);
    int value = 0;
    const char* const end = message.data() + message.size();
    if (at == std::string::npos || std::from_chars(message.data() + at + mark.size(), end, value).ec != std::errc()) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

std::optional<int> status_in(const std::string& message)
{
    return number_behind(message, "Error=");
}

std::optional<int> driver_result_in(const std::string& message)
{
    return number_behind(message, " ret = ");
}

int local_date()
{
    const std::time_t now = std::time(nullptr);
    const std::tm* const local = std::localtime(&now);
    return (local->tm_year + 1900) * 10000 + (local->tm_mon + 1) * 100 + local->tm_mday;
}

void Log_parser::read(std::string_view bytes, const Sink& sink)
{
    const std::size_t end = bytes.rfind('\n');
    if (end == std::string_view::npos) {
        rest_ += bytes;
        return;
    }
    rest_ += bytes.substr(0, end + 1);
    read_lines(rest_, sink);
    rest_ = bytes.substr(end + 1);
}

void Log_parser::end(const Sink& sink)
{
    read_lines(std::exchange(rest_, {}), sink);
}

void Log_parser::read_lines(std::string_view text, const Sink& sink)
{
    while (!text.empty()) {
        std::size_t size = 1;
        if (is_time(text)) {
            size = time_size;
            take_time(text);
        } else if (is_thread(text)) {
            size = thread_size;
            take_thread(text);
        } else if (text[0] != ' ' || last_ == Piece::thread) {  // the blank between time and thread is a piece as well
            while (size < text.size() && text[size - 1] != '\n' && !is_time(text.substr(size)) &&
                   !is_thread(text.substr(size))) {
                ++size;
            }
            take_message(text.substr(0, size), sink);
        } else {
            last_ = last_ == Piece::time ? Piece::blank : Piece::none;
        }
        text.remove_prefix(size);
    }
}

void Log_parser::take_time(std::string_view text)
{
    const int month = place_of(months, text.substr(4, 3)) + 1;
    const int day = static_cast<int>(number(text.substr(8, 2)));
    char date[40];
    std::snprintf(date, sizeof date, "%04d-%02d-%02d",
                  year_of(place_of(weekdays, text.substr(0, 3)), month, day, today_), month, day);
    pending_.push_back({{std::string(date) + "T" + std::string(text.substr(11, 12)), {}, {}, false}, 0});
    last_ = Piece::time;
}

void Log_parser::take_thread(std::string_view text)
{
    const auto lacks_thread = [](const Pending& line) { return !line.entry.thread; };
    auto line = std::find_if(pending_.begin(), pending_.end(), lacks_thread);
    if (last_ == Piece::blank && lacks_thread(pending_.back())) {
        line = std::prev(pending_.end());
    }
    if (line == pending_.end()) {
        pending_.push_back({});
        line = std::prev(pending_.end());
    }
    line->entry.thread = number(text.substr(4, thread_size - 5));
    std::rotate(line, line + 1, pending_.end());  // the next message is its own, unless another piece comes first
    last_ = Piece::thread;
}

void Log_parser::take_message(std::string_view text, const Sink& sink)
{
    text = text.substr(0, text.find_last_not_of("\r\n") + 1);
    if (text.empty()) {
        return;  // the end of a line whose message came before
    }
    Log_entry entry;
    entry.mixed = pending_.size() != 1;
    if (!pending_.empty()) {
        auto line = last_ == Piece::thread ? std::prev(pending_.end()) : pending_.begin();
        entry.time = std::move(line->entry.time);
        entry.thread = line->entry.thread;
        pending_.erase(line);
    }
    entry.message = text;
    last_ = Piece::none;
    for (Pending& line : pending_) {
        ++line.age;
    }
    pending_.erase(
        std::remove_if(pending_.begin(), pending_.end(), [](const Pending& line) { return line.age > oldest_pending; }),
        pending_.end());
    sink(std::move(entry));
}

}  // namespace vyra_tool
