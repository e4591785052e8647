#include "log_printer.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "output.h"
#include "status_text.h"

namespace vyra_tool {

Log_printer::Log_printer(std::string since, std::size_t tail, Output& output)
    : since_(std::move(since)), tail_(tail), output_(output)
{
}

void Log_printer::add(Log_entry entry)
{
    if (!entry.time.empty()) {
        recent_ = since_.empty() || entry.time >= since_;  // a line without a time is as old as the one before
    }
    if (!recent_) {
        return;
    }
    if (!lines_.empty() && lines_.back().entry.message == entry.message) {
        lines_.back().until = entry.time;
        ++lines_.back().times;
        return;
    }
    lines_.push_back({std::move(entry)});
    if (tail_ != 0 && lines_.size() > tail_) {
        lines_.pop_front();
        ++left_out_;
    }
}

void Log_printer::print()
{
    while (!lines_.empty()) {
        print_first();
    }
    tail_ = 0;
}

void Log_printer::print_new()
{
    while (lines_.size() > 1 || (!lines_.empty() && lines_.front().entry.message != printed_)) {
        print_first();
    }
}

void Log_printer::print_first()
{
    const Repeated_line line = std::move(lines_.front());
    lines_.pop_front();
    printed_ = line.entry.message;
    output_.json() ? output_.object(json_of(line)) : output_.line(text_of(line));
}

std::string Log_printer::text_of(const Repeated_line& line)
{
    std::string text = line.entry.time.empty() ? "(no time)" : line.entry.time;
    std::replace(text.begin(), text.end(), 'T', ' ');
    text += line.entry.mixed ? " ~" : "  ";
    text += line.entry.thread ? "thread " + std::to_string(*line.entry.thread) : "(no thread)";
    text += "  " + line.entry.message;
    if (line.times > 1) {
        text += "  (" + std::to_string(line.times) + " times, the last at " +
                line.until.substr(std::min<std::size_t>(line.until.size(), 11)) + ")";
    }
    return text;
}

nlohmann::ordered_json Log_printer::json_of(const Repeated_line& line)
{
    nlohmann::ordered_json object = {{"time", line.entry.time}, {"thread", nullptr}, {"message", line.entry.message}};
    if (line.entry.thread) {
        object["thread"] = *line.entry.thread;
    }
    if (const auto code = status_in(line.entry.message)) {
        object.update({{"code", *code}, {"name", status_text(*code).name}});
    }
    if (const auto result = driver_result_in(line.entry.message)) {
        object["driver_result"] = *result;
    }
    object.update({{"times", line.times}, {"mixed", line.entry.mixed}});
    if (line.times > 1) {
        object["until"] = line.until;
    }
    return object;
}

}  // namespace vyra_tool
