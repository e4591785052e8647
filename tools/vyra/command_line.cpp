#include "command_line.h"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "failure.h"
#include "loaded_library.h"
#include "module.h"
#include "option_values.h"
#include "output.h"
#include "run.h"
#include "session.h"
#include "usage.h"

namespace vyra_tool {
namespace {

constexpr int success = 0;

const char* const description =
    "Drives a fingerprint scanner through vyrabrenvozulta.dll: lists scanners, captures\n"
    "images, shows and sets what a scanner knows, and watches it come and go.";

const char* const first_steps =
    R"(First steps:
  vyra list                        which scanners are attached
  vyra capture --out images        one flat image, as images/image_0001.png
  vyra capture --help              everything about one command

Results go to the standard output, progress and errors to the standard error.

Exit codes:
  0  done
  1  the scanner or the library failed
  2  wrong usage: nothing was touched
  3  no such scanner is attached
  4  the scanner went away
  5  a file could not be read or written
  6  a DLL is missing or does not fit
A message says what failed, the library's code with its text, and what to try.)";

const char* const exit_codes =
    "\n\nExit codes: 0 done, 1 scanner or library failed, 2 wrong usage, 3 no such scanner,\n"
    "4 scanner went away, 5 file, 6 DLL.";

void describe(CLI::App& app, Command_line& line)
{
    app.name("vyra");
    app.allow_windows_style_options(false);  // a path that begins with a slash is a path
    app.add_flag("--version", line.version, "Print the versions of the tool and of the DLLs");
    app.footer(first_steps);
    app.require_subcommand(0, 1);  // none is answered below
    app.allow_extras();            // check_usage() answers them
    app.add_flag("--json", "Print JSON, errors too; every command has it as well");
    add_help(app, line);
    add_list(app, line);
    add_capture(app, line);
    add_info(app, line);
    add_leds(app, line);
    add_beep(app, line);
    add_param(app, line);
    add_snapshot(app, line);
    add_calibration(app, line);
    add_firmware(app, line);
    add_reset(app, line);
    add_status(app, line);
    add_watch(app, line);
    add_log(app, line);
    add_selftest(app, line);
    add_doctor(app, line);
    add_completion(app, line);
}

// Whether --json stands among the arguments: known before they are parsed, so that an error in them is JSON too.
bool ask_for_json(const std::vector<std::string>& arguments)
{
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::find(arguments.begin(), end, "--json") != end;
}

// The tool's own, and those of the DLLs that are there.
void print_versions(Output& output)
{
    nlohmann::ordered_json versions = {{"vyra", VYRA_VERSION_TEXT}};
    std::string text = "vyra " VYRA_VERSION_TEXT "\n";
    loaded_library();
    for (const std::string name : {library_name, driver_name}) {
        if (const auto module = loaded_module(name)) {
            versions[name] = {{"version", module->version}, {"file", module->file}, {"simulated", module->simulated}};
            text += name + (module->version.empty() ? "" : " " + module->version) +
                    (module->simulated ? ", simulated" : "") + "  " + module->file + "\n";
        } else {
            versions[name] = nullptr;
            text += name + " is not loaded: vyra doctor tells why\n";
        }
    }
    output.json() ? output.object(versions) : output.lines(text);
}

// Leaves the command's action in line; there is none when the help was asked for, which is then printed.
void parse(CLI::App& app, const std::vector<std::string>& arguments, Output& output)
{
    try {
        // The parser takes the arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::Success& asked) {
        std::ostringstream text;
        app.exit(asked, text, text);
        output.lines(text.str());
        throw;
    } catch (const CLI::ParseError& error) {
        throw explained(app, error);
    }
    check_usage(app);
}

void perform(CLI::App& app, const Command_line& line, const std::vector<std::string>& arguments, Output& output)
{
    parse(app, arguments, output);
    if (line.version) {
        print_versions(output);
        return;
    }
    if (!line.action) {
        throw Wrong_usage("name a command, for instance \"vyra list\"", "vyra --help, which explains them all");
    }
    if (line.needs_library) {
        load_library();
    }
    try {
        line.action(line.common, output);
    } catch (const Wrong_usage& wrong) {
        throw wrong.advice().empty() ? Wrong_usage(wrong.what(), help_call(app)) : wrong;
    }
}

}  // namespace

CLI::App* add_command(CLI::App& app, Command_line& line, const std::string& name, const std::string& summary,
                      const std::string& guide)
{
    CLI::App* command = app.add_subcommand(name, summary);
    command->add_flag("--json", "Print JSON: one object, or one a line for a command that goes on");
    command
        ->add_option_function<std::string>(
            "--log",
            [&line](const std::string& level) {
                line.common.log_level = level == "all"     ? VYRA_LOG_ALL
                                        : level == "trace" ? VYRA_LOG_TRACE
                                                           : VYRA_LOG_OFF;
            },
            "What the library writes to its own log (vyrabrenvozulta.log in the machine's\n"
            "application data): off, trace (tracing alone) or all (errors and events too)")
        ->check(one_of({"off", "trace", "all"}))
        ->option_text("LEVEL");
    command->footer(guide + exit_codes);
    return command;
}

CLI::App* add_scanner_command(CLI::App& app, Command_line& line, const std::string& name, const std::string& summary,
                              const std::string& guide)
{
    CLI::App* command = add_command(app, line, name, summary, guide);
    command
        ->add_option("--scanner", line.common.scanner,
                     "The scanner to use, by its name in vyra list; the first one without it")
        ->option_text("NAME");
    return command;
}

void add_help(CLI::App& app, Command_line& line)
{
    auto wanted = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand("help", "Explain a command, or all of them");
    command->add_option("command", *wanted, "The command to explain")->option_text("COMMAND");
    command->callback([&app, &line, wanted] {
        line.needs_library = false;
        line.action = [&app, wanted](const Common_options&, Output& output) { output.lines(help_of(app, *wanted)); };
    });
}

int run(const std::vector<std::string>& arguments, std::FILE* results)
{
    CLI::App app{description};
    Command_line line;
    describe(app, line);
    Output output(results, ask_for_json(arguments));
    try {
        perform(app, line, arguments, output);
        return success;
    } catch (const CLI::Success&) {
        return success;
    } catch (const std::exception& error) {
        const Failure failure = failure_of(error);
        output.failure(failure);
        return static_cast<int>(failure.cause());
    }
}

}  // namespace vyra_tool
