#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "command_line.h"
#include "failure.h"
#include "interrupt.h"
#include "library_log.h"
#include "log_files.h"
#include "log_printer.h"
#include "option_values.h"
#include "output.h"

namespace vyra_tool {
namespace {

const char* const log_guide =
    R"(Prints the log that the library writes when a host asks for it (vyra does with
--log all), from its older generation on, oldest line first. A line that comes again and
again is printed once, with the number of times and the time of the last; --follow counts
what it has just shown until something else comes. Times are those of the computer's clock. A line whose pieces stood between those of others, since
all programs write to the same file, is marked with a ~: its time and thread may be
another line's. Without --tail and --since the last 50 lines are printed.

Examples:
  vyra log
  vyra log --since 10m
  vyra log --since 2026-11-16T02:30 --json
  vyra log --tail 5 --follow
  vyra log --file from_another_computer.log --tail 0)";

constexpr std::size_t default_tail = 50;
constexpr auto follow_interval = std::chrono::milliseconds(250);

struct Log_options {
    std::string file;
    bool path = false;
    bool follow = false;
    std::size_t tail = default_tail;  // 0: all
    bool tail_given = false;
    std::string since;
};

std::string local_time_text(std::time_t time)
{
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", std::localtime(&time));
    return text;
}

// "10m" is ten minutes before now.
bool parse_age(const std::string& text, std::time_t& seconds)
{
    int value = 0;
    char unit = 0;
    char more = 0;
    if (std::sscanf(text.c_str(), "%9d%c%c", &value, &unit, &more) != 2 || value < 0) {
        return false;
    }
    seconds = std::time_t{value} * (unit == 's' ? 1 : unit == 'm' ? 60 : unit == 'h' ? 3600 : 86400);
    return unit == 's' || unit == 'm' || unit == 'h' || unit == 'd';
}

// A day, or a day and a time of which the seconds, or the minutes too, may be left out.
bool is_date(const std::string& text)
{
    const std::string pattern = "0000-00-00T00:00:00";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool digit = text[i] >= '0' && text[i] <= '9';
        if (i >= pattern.size() ||
            (pattern[i] == '0' ? !digit : text[i] != pattern[i] && !(i == 10 && text[i] == ' '))) {
            return false;
        }
    }
    return text.size() == 10 || text.size() == 13 || text.size() == 16 || text.size() == 19;
}

// As the times of the entries, so that texts can be compared; empty for no limit.
std::string parse_since(const std::string& text)
{
    std::time_t age = 0;
    if (text.empty()) {
        return {};
    }
    if (parse_age(text, age)) {
        return local_time_text(std::time(nullptr) - age);
    }
    if (!is_date(text)) {
        throw Wrong_usage("\"" + text +
                          "\" is no time: give an age such as 30s, 10m, 2h or 3d, or a local time such as "
                          "2026-11-16T02:30");
    }
    std::string since = text;
    if (since.size() > 10) {
        since[10] = 'T';
    }
    return since;
}

void print_path(const Log_files& files, Output& output)
{
    std::error_code missing;
    const auto size = std::filesystem::file_size(files.current(), missing);
    if (output.json()) {
        output.object({{"path", files.current().u8string()},
                       {"older", files.older().u8string()},
                       {"bytes", missing ? nlohmann::ordered_json() : nlohmann::ordered_json(size)}});
    } else {
        output.line(files.current().u8string());
    }
}

void log(const Log_options& options, Output& output)
{
    Log_files files(options.file.empty() ? library_log_path() : options.file);
    if (options.path) {
        print_path(files, output);
        return;
    }
    const std::string since = parse_since(options.since);
    Log_printer printer(since, options.tail_given || since.empty() ? options.tail : 0, output);
    Log_parser parser(local_date());
    const auto take = [&](Log_entry entry) { printer.add(std::move(entry)); };
    const auto parse = [&](std::string_view bytes) { parser.read(bytes, take); };
    try {
        files.read_all(parse);
    } catch (const Failure&) {
        if (!options.follow) {
            throw;
        }
        Output::note("there is no log yet; waiting for " + files.current().u8string());
    }
    if (!options.follow) {
        parser.end(take);
    }
    if (printer.left_out() > 0 && !options.tail_given) {
        Output::note("the last " + std::to_string(default_tail) + " lines of " + files.current().u8string() +
                     "; --tail 0 prints all");
    }
    printer.print();
    while (options.follow && !interrupted()) {
        std::this_thread::sleep_for(follow_interval);
        files.read_added(parse);
        printer.print_new();
    }
    printer.print();
}

}  // namespace

void add_log(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<Log_options>();
    CLI::App* command = add_command(app, line, "log", "Print the library's own log", log_guide);
    command->add_flag("--path", options->path, "Print where the log is, and nothing else");
    CLI::Option* tail =
        command->add_option("--tail", options->tail, "The last lines only, repeated ones counted as one; 0: all")
            ->option_text("NUMBER")
            ->check(whole_number(0, 1'000'000'000));
    command->add_flag("--follow", options->follow, "Go on with what is added, until Ctrl-C");
    command
        ->add_option("--since", options->since,
                     "Nothing older than this: 30s, 10m, 2h, 3d, or a local time as\n2026-11-16 or 2026-11-16T02:30")
        ->option_text("TIME");
    command
        ->add_option("--file", options->file,
                     "This log instead, for instance another computer's; the older generation\n"
                     "is read when it lies beside it (NAME2.log)")
        ->option_text("FILE");
    command->callback([&line, options, tail] {
        line.needs_library = false;
        options->tail_given = tail->count() > 0;
        line.action = [options](const Common_options&, Output& output) { log(*options, output); };
    });
}

}  // namespace vyra_tool
