#include "usage.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "quoted_list.h"

namespace vyra_tool {
namespace {

// The command that was named, or the tool itself.
const CLI::App& chosen(const CLI::App& app)
{
    const auto commands = app.get_subcommands();
    return commands.empty() ? app : *commands.front();
}

// How many letters must be added, left out or replaced to make one word of the other.
std::size_t distance(const std::string& left, const std::string& right)
{
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (const char letter : left) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < right.size(); ++j) {
            const std::size_t replaced = diagonal + (letter == right[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

// The word that was probably meant; empty when none is near.
std::string nearest(const std::string& word, const std::vector<std::string>& words)
{
    const auto best = std::min_element(words.begin(), words.end(), [&](const auto& a, const auto& b) {
        return distance(word, a) < distance(word, b);
    });
    return best != words.end() && distance(word, *best) <= (best->size() + 2) / 3 ? *best : "";
}

std::string word_list(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

std::vector<std::string> command_names(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands(nullptr)) {
        names.push_back(command->get_name());
    }
    return names;
}

std::vector<std::string> option_names(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

Wrong_usage unknown_command(const CLI::App& app, const std::string& name)
{
    const std::vector<std::string> names = command_names(app);
    const std::string meant = nearest(name, names);
    return Wrong_usage("there is no command \"" + name + "\"" + (meant.empty() ? "" : ", perhaps you mean " + meant),
                       "one of " + word_list(names));
}

Wrong_usage unexpected(const CLI::App& app, const CLI::App& command, const std::vector<std::string>& arguments)
{
    const std::string name =
        &command == &app ? "this is not understood: " : command.get_name() + " does not understand ";
    const std::string option = arguments.front().substr(0, arguments.front().find('='));
    const std::string meant = !option.empty() && option[0] == '-' ? nearest(option, option_names(command)) : "";
    return Wrong_usage(name + quoted_list(arguments) + (meant.empty() ? "" : ", perhaps you mean " + meant),
                       help_call(app));
}

// As the help shows it: "--out FILE".
std::string shown(const CLI::Option& option)
{
    const std::string value = option.get_option_text().substr(0, option.get_option_text().find(" (required)"));
    return option.get_positional() ? value : option.get_name() + " " + value;
}

Wrong_usage missing_value(const CLI::App& app, const CLI::Option& option)
{
    const bool several = option.get_expected_min() > 1;
    return Wrong_usage(
        option.get_name() +
            (several ? " needs " + std::to_string(option.get_expected_min()) + " values" : " needs a value") +
            ", as in " + shown(option),
        help_call(app));
}

// The option that a message of the parser begins with; null when there is none.
const CLI::Option* option_in(const CLI::App& command, const std::string& message)
{
    for (const CLI::Option* option : command.get_options()) {
        const std::string name = option->get_name();
        if (message.compare(0, name.size(), name) == 0 && message.size() > name.size() && message[name.size()] == ':') {
            return option;
        }
    }
    return nullptr;
}

// An option that is given the name of another one has no value of its own.
void check_values(const CLI::App& app, const CLI::App& command)
{
    const std::vector<std::string> names = option_names(command);
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_expected_max() == 0) {
            continue;  // a flag
        }
        for (const std::string& value : option->results()) {
            if (value.empty()) {
                throw Wrong_usage(option->get_name() + " is given an empty value", help_call(app));
            }
            if (std::find(names.begin(), names.end(), value) != names.end()) {
                throw missing_value(app, *option);
            }
        }
    }
}

// What no option and no position took; the mark "--" itself is no argument.
std::vector<std::string> arguments_left(const CLI::App& command)
{
    std::vector<std::string> left = command.remaining();
    if (const auto mark = std::find(left.begin(), left.end(), "--"); mark != left.end()) {
        left.erase(mark);
    }
    return left;
}

}  // namespace

Wrong_usage explained(const CLI::App& app, const CLI::ParseError& error)
{
    const CLI::App& command = chosen(app);
    try {
        check_usage(app);
    } catch (const Wrong_usage& wrong) {
        return wrong;
    }
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        std::string missing;
        for (const CLI::Option* option : command.get_options()) {
            if (option->get_required() && option->count() == 0) {
                missing += (missing.empty() ? "" : " and ") + shown(*option);
            }
        }
        return Wrong_usage(command.get_name() + " needs " + missing, help_call(app));
    }
    const CLI::Option* option = option_in(command, error.what());
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr && option != nullptr) {
        return missing_value(app, *option);
    }
    return Wrong_usage(error.what(), help_call(app));
}

void check_usage(const CLI::App& app)
{
    const std::vector<std::string> before = arguments_left(app);
    const auto name =
        std::find_if(before.begin(), before.end(), [](const auto& word) { return word.empty() || word[0] != '-'; });
    if (name != before.end()) {
        throw unknown_command(app, *name);
    }
    if (!before.empty()) {
        throw unexpected(app, app, before);
    }
    const CLI::App& command = chosen(app);
    check_values(app, command);
    if (const std::vector<std::string> unknown = arguments_left(command); !unknown.empty()) {
        throw unexpected(app, command, unknown);
    }
}

std::string help_of(const CLI::App& app, const std::string& command)
{
    const std::vector<std::string> names = command_names(app);
    if (command.empty()) {
        // help() would be that of the command that runs.
        return app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
    }
    if (std::find(names.begin(), names.end(), command) == names.end()) {
        throw unknown_command(app, command);
    }
    return app.get_subcommand(command)->help(app.get_name());
}

std::string help_call(const CLI::App& app)
{
    const CLI::App& command = chosen(app);
    return &command == &app ? "vyra help" : "vyra help " + command.get_name();
}

}  // namespace vyra_tool
