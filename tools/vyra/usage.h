// Wrong usage in the tool's own words, whoever noticed it.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "failure.h"

namespace vyra_tool {

// What the parser complains of.
Wrong_usage explained(const CLI::App& app, const CLI::ParseError& error);

// Throws a Wrong_usage for what the parser lets pass: arguments that nobody asked for, values that are empty or another
// option's name, no command.
void check_usage(const CLI::App& app);

// How to ask for the help of the command that was named: "vyra help capture".
std::string help_call(const CLI::App& app);

// The help of a command, or of the whole tool for an empty name; throws a Wrong_usage for a command that is not there.
std::string help_of(const CLI::App& app, const std::string& command);

}  // namespace vyra_tool
