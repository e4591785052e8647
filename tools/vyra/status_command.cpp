#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "command_line.h"
#include "failure.h"
#include "interrupt.h"
#include "option_values.h"
#include "output.h"
#include "session.h"
#include "status_text.h"

namespace vyra_tool {
namespace {

const char* const status_guide =
    R"(Opens a scanner and waits until it is unplugged (9005 VYRA_DEVICE_UNAVAIL, exit code
4) or the computer goes to sleep (9110 VYRA_SCN_UNAVAILABLE, exit code 1). This is the
library's own wait, for one scanner; vyra watch prints everything that happens. Opening
a scanner switches its LEDs off. When the time is over, or Ctrl-C is pressed, without a
change, the exit code is 1.

Examples:
  vyra status
  vyra status --timeout 10 --json)";

using Clock = std::chrono::steady_clock;

struct Status_options {
    double timeout = 0;  // in seconds; 0: none
};

// A wait for a change of the scanner's status on a thread of its own, which the end of this waits for. The scanner's
// close releases the thread; so does the library's end when the library has no time for the close: this outlives both.
struct Status_wait {
    std::atomic<bool> closing{false};
    std::future<int> change;
};

// The scanner's status once it is not well any more, or nothing when the time is over or the user ends the wait.
std::optional<int> changed_status(Status_wait& wait, const Library& library, const std::string& name, double timeout)
{
    const Scanner scanner(library, name);
    const std::shared_ptr<void> end_of_wait(nullptr, [&wait](void*) { wait.closing = true; });
    wait.change = std::async(std::launch::async, [&wait, handle = scanner.handle()] {
        int status = VYRA_OK;  // as also after a change that nobody waited for when it came, and that is over
        while (!wait.closing && status == VYRA_OK) {
            status = VyraGetStatus(handle);
        }
        return status;
    });
    Output::note("waiting for a change of \"" + name + "\"; Ctrl-C ends");
    const auto begin = Clock::now();
    while (wait.change.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready) {
        if (interrupted() || (timeout > 0 && Clock::now() - begin >= std::chrono::duration<double>(timeout))) {
            return std::nullopt;
        }
    }
    return wait.change.get();
}

void status(const Common_options& common, const Status_options& options, Output& output)
{
    Status_wait wait;
    const Library library(common.log_level);
    const std::string name = library.choose(common.scanner);
    const std::optional<int> code = changed_status(wait, library, name, options.timeout);
    if (!code) {
        if (output.json()) {
            output.object({{"scanner", name}, {"changed", false}});
        }
        throw Failure(interrupted() ? "interrupted: nothing has changed" : "nothing has changed in that time",
                      "wait longer with --timeout, or watch everything with vyra watch");
    }
    if (output.json()) {
        const Status_text text = status_text(*code);
        output.object(
            {{"scanner", name}, {"changed", true}, {"code", *code}, {"name", text.name}, {"text", text.meaning}});
    } else {
        output.line(name + "  " + code_text(*code));
    }
    const bool gone = *code == VYRA_DEVICE_UNAVAIL;
    throw Failure("the scanner \"" + name + "\" is " + (gone ? "gone" : "not available"), *code,
                  gone ? "plug the scanner in again" : "", gone ? Cause::scanner_gone : Cause::scanner_or_library);
}

}  // namespace

void add_status(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<Status_options>();
    CLI::App* command =
        add_scanner_command(app, line, "status", "Wait for the next change of a scanner's state", status_guide);
    command->add_option("--timeout", options->timeout, "How long to wait at most; 0, as without it: until Ctrl-C")
        ->option_text("SECONDS")
        ->check(number(0, 86400));
    command->callback([&line, options] {
        line.action = [options](const Common_options& common, Output& output) { status(common, *options, output); };
    });
}

}  // namespace vyra_tool
