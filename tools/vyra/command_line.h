// The commands of the tool. Each add function describes one command and its options to the parser; parsing a command
// line then leaves the command's action in the Command_line.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <string>

namespace vyra_tool {

class Output;

struct Common_options {
    std::string scanner;  // empty: the first one
    std::uint32_t log_level = 0;
};

// Does the command's work; throws a Failure when it cannot, Wrong_usage when the values do not make sense.
using Action = std::function<void(const Common_options&, Output&)>;

struct Command_line {
    Common_options common;
    Action action;
    bool needs_library = true;
    bool version = false;  // is all that was asked for
};

// Adds a subcommand with the options that all commands share. The summary is one line; the guide, which ends in
// examples, stands below the options in the command's own help.
CLI::App* add_command(CLI::App& app, Command_line& line, const std::string& name, const std::string& summary,
                      const std::string& guide);
// The same for a command that works on one scanner.
CLI::App* add_scanner_command(CLI::App& app, Command_line& line, const std::string& name, const std::string& summary,
                              const std::string& guide);

// Each stands in NAME_command.cpp, but for those of which the file is named.
void add_help(CLI::App& app, Command_line& line);  // command_line.cpp
void add_list(CLI::App& app, Command_line& line);
void add_capture(CLI::App& app, Command_line& line);
void add_info(CLI::App& app, Command_line& line);
void add_leds(CLI::App& app, Command_line& line);         // feedback_commands.cpp
void add_beep(CLI::App& app, Command_line& line);         // feedback_commands.cpp
void add_param(CLI::App& app, Command_line& line);        // data_commands.cpp
void add_snapshot(CLI::App& app, Command_line& line);     // data_commands.cpp
void add_calibration(CLI::App& app, Command_line& line);  // data_commands.cpp
void add_firmware(CLI::App& app, Command_line& line);
void add_reset(CLI::App& app, Command_line& line);
void add_status(CLI::App& app, Command_line& line);
void add_doctor(CLI::App& app, Command_line& line);
void add_completion(CLI::App& app, Command_line& line);
void add_watch(CLI::App& app, Command_line& line);
void add_log(CLI::App& app, Command_line& line);
void add_selftest(CLI::App& app, Command_line& line);

}  // namespace vyra_tool
