#include "command_line.h"

#include <algorithm>
#include <new>
#include <sstream>

#include "failure.h"
#include "output.h"
#include "run.h"
#include "session.h"

namespace vyra_tool {
namespace {

constexpr int success = 0;
constexpr int failed = 1;
constexpr int wrong_usage = 2;

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
  0  success
  1  the scanner, the library or a file failed; the message says what failed, the
     library's code with its text, and what to try
  2  wrong usage)";

void describe(CLI::App& app, Command_line& line)
{
    app.name("vyra");
    app.allow_windows_style_options(false);  // a path that begins with a slash is a path
    app.set_version_flag("--version", "vyra " VYRA_VERSION_TEXT, "Print the tool's version and exit");
    app.footer(first_steps);
    app.require_subcommand(0, 1);  // none is answered below, with their names
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
}

// Prints what the parser has to say: the help that was asked for as a result, everything else as an error.
int answer(const CLI::App& app, const CLI::ParseError& error, std::FILE* results)
{
    std::ostringstream help;
    std::ostringstream message;
    const int code = app.exit(error, help, message);
    std::fputs(help.str().c_str(), results);
    std::fflush(results);
    if (code == success) {
        return success;
    }
    std::string text = message.str();
    Output::note(text.substr(0, text.find_last_not_of('\n') + 1));
    return wrong_usage;
}

int perform(const Command_line& line, Output& output)
{
    try {
        line.action(line.common, output);
        return success;
    } catch (const Wrong_usage& error) {
        Output::note(error.what());
        return wrong_usage;
    } catch (const Failure& failure) {
        output.failure(failure);
        return static_cast<int>(failure.cause());
    } catch (const std::bad_alloc&) {
        output.failure(Failure("out of memory", "close other programs and try again"));
    } catch (const std::exception& error) {
        output.failure(Failure(error.what(), "report it as a fault of this tool"));
    }
    return failed;
}

}  // namespace

CLI::App* add_command(CLI::App& app, Command_line& line, const std::string& name, const std::string& summary,
                      const std::string& guide)
{
    CLI::App* command = app.add_subcommand(name, summary);
    command->add_flag("--json", line.common.json, "Print JSON: one object, or one a line for a command that goes on");
    command
        ->add_option_function<std::string>(
            "--log",
            [&line](const std::string& level) {
                line.common.log_level = level == "all" ? log_all : level == "trace" ? log_trace : log_off;
            },
            "What the library writes to its own log (vyrabrenvozulta.log in the machine's\n"
            "application data): off, trace (tracing alone) or all (errors and events too)")
        ->check(CLI::IsMember({"off", "trace", "all"}))
        ->option_text("LEVEL");
    command->footer(guide + "\n\nExit codes: 0 success, 1 scanner, library or file failure, 2 wrong usage.");
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

int run(const std::vector<std::string>& arguments, std::FILE* results)
{
    CLI::App app{description};
    Command_line line;
    describe(app, line);
    try {
        // The parser takes the arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        return answer(app, error, results);
    }
    if (!line.action) {
        Output::note("name a command, for instance \"vyra list\"; \"vyra --help\" explains them all");
        return wrong_usage;
    }
    Output output(results, line.common.json);
    return perform(line, output);
}

}  // namespace vyra_tool
