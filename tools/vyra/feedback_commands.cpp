// leds and beep: what a scanner's operator sees and hears.
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "command_line.h"
#include "failure.h"
#include "led_record.h"
#include "output.h"
#include "session.h"

namespace vyra_tool {
namespace {

const char* const leds_guide =
    R"(One group of LEDs is shown at a time, each of its positions in a state; positions that
are not named are off. They stay as they are until the scanner is used again.

Groups and positions: a 1 to 4, b 1 to 4, c 1 and 2
States: off, and the scanner's three lit states lit1, lit2 and lit3

Examples:
  vyra leds a 1=lit1 2=lit1 4=lit3
  vyra leds c 2=lit2 --json
  vyra leds --off)";

const char* const beep_guide =
    R"(

Examples:
  vyra beep short
  vyra beep 0)";

struct Led_options {
    bool off = false;
    std::string group;
    std::vector<std::string> settings;
};

DevUI record_of(const Led_options& options)
{
    if (options.off) {
        if (!options.group.empty()) {
            throw Wrong_usage("--off switches every LED off and takes no group");
        }
        return leds_off();
    }
    if (options.group.empty()) {
        throw Wrong_usage("name a group (a, b or c) and its LEDs, for instance \"vyra leds a 1=lit1\", or --off");
    }
    return led_record(options.group, options.settings);
}

void leds(const Common_options& common, const Led_options& options, Output& output)
{
    const DevUI record = record_of(options);
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    check(VyraBrenvoSetDevUI(scanner.handle(), &record), "set the LEDs of \"" + scanner.name() + "\"");
    DevUI told{};
    check(VyraBrenvoGetDevUI(scanner.handle(), &told), "read the LEDs of \"" + scanner.name() + "\"");
    const Shown_leds shown = shown_leds(told);
    if (output.json()) {
        nlohmann::ordered_json positions = nlohmann::ordered_json::object();
        for (std::size_t i = 0; i < shown.states.size(); ++i) {
            positions[std::to_string(i + 1)] = shown.states[i];
        }
        output.object({{"scanner", scanner.name()},
                       {"group", shown.group.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(shown.group)},
                       {"positions", positions}});
        return;
    }
    std::string text = shown.group.empty() ? "all LEDs off" : "group " + shown.group + ":";
    for (std::size_t i = 0; i < shown.states.size(); ++i) {
        text += " " + std::to_string(i + 1) + "=" + shown.states[i];
    }
    output.line(text);
}

struct Pattern {
    const char* name;  // its number is its place
    const char* description;
};

constexpr Pattern patterns[] = {
    {"double", "1000 Hz for 200 and then 300 ms"},
    {"long", "1000 Hz for 600 ms"},
    {"short", "1000 Hz for 300 ms"},
    {"low", "800 Hz for 600 ms"},
};

std::string pattern_list(const char* separator)
{
    std::string list;
    for (std::size_t i = 0; i < std::size(patterns); ++i) {
        list += (i == 0 ? "" : separator) + std::to_string(i) + " or " + patterns[i].name + " (" +
                patterns[i].description + ")";
    }
    return list;
}

void beep(const Common_options& common, const std::string& wanted, Output& output)
{
    std::uint32_t number = 0;
    while (number < std::size(patterns) && wanted != patterns[number].name && wanted != std::to_string(number)) {
        ++number;
    }
    if (number == std::size(patterns)) {
        throw Wrong_usage("there is no tone pattern \"" + wanted + "\": the patterns are " + pattern_list(", "));
    }
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    check(VyraBrenvoSetBuzzer(scanner.handle(), number, nullptr, nullptr), "play the tone");
    const Pattern& pattern = patterns[number];
    if (output.json()) {
        output.object(
            {{"scanner", scanner.name()}, {"pattern", number}, {"name", pattern.name}, {"tones", pattern.description}});
    } else {
        output.line("played " + std::string(pattern.name) + ": " + pattern.description);
    }
}

}  // namespace

void add_leds(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<Led_options>();
    CLI::App* command =
        add_scanner_command(app, line, "leds", "Show LEDs on a scanner, or switch them off", leds_guide);
    command->add_flag("--off", options->off, "Switch every LED off");
    command->add_option("group", options->group, "a, b or c")->option_text("GROUP");
    command->add_option("leds", options->settings, "For instance 1=lit2")->option_text("POSITION=STATE ...");
    command->callback([&line, options] {
        line.action = [options](const Common_options& common, Output& output) { leds(common, *options, output); };
    });
}

void add_beep(CLI::App& app, Command_line& line)
{
    auto pattern = std::make_shared<std::string>();
    CLI::App* command = add_scanner_command(
        app, line, "beep", "Play a tone, as for a scanner's operator",
        "The tone sounds on this computer. The patterns are\n  " + pattern_list("\n  ") + beep_guide);
    command->add_option("pattern", *pattern, "A pattern's number or name")
        ->required()
        ->option_text("PATTERN (required)");
    command->callback([&line, pattern] {
        line.action = [pattern](const Common_options& common, Output& output) { beep(common, *pattern, output); };
    });
}

}  // namespace vyra_tool
