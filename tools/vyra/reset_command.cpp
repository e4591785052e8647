#include <chrono>
#include <nlohmann/json.hpp>

#include "command_line.h"
#include "failure.h"
#include "output.h"
#include "restart.h"

namespace vyra_tool {
namespace {

const char* const reset_guide =
    R"(Restarts the scanner, the first thing to try when it does not do what it should, and
waits until it is back. The library waits for 2 seconds; a scanner that has left the
bus and takes longer is waited for up to 30 seconds more. Its LEDs are off afterwards.
A scanner that another program uses cannot be restarted.

Examples:
  vyra reset
  vyra reset --scanner "RQ7-3050 #2" --json)";

// The library has waited already.
constexpr std::chrono::milliseconds departure_patience{500};
constexpr std::chrono::milliseconds return_patience{30'000};

DeviceInfo reset_scanner(Scanner& scanner)
{
    const DeviceInfo before = scanner.info();
    const Presence seen = presence(scanner.name());
    const int status = VyraBusReset_N(scanner.handle());
    if (status == VYRA_OK) {
        return scanner.info();
    }
    if (status == VYRA_DEVICE_UNAVAIL) {
        Output::note("\"" + scanner.name() + "\" is not back yet; waiting for it");
        const Restarted restarted = wait_for_restart(scanner, before, seen, {departure_patience, return_patience});
        if (restarted.proven) {
            return restarted.info;
        }
    }
    throw Failure("cannot restart the scanner \"" + scanner.name() + "\"", status,
                  "plug the scanner out and in; vyra list shows whether it is there");
}

void reset(const Common_options& common, Output& output)
{
    const Library library(common.log_level);
    Scanner scanner(library, library.choose(common.scanner));
    const auto begin = std::chrono::steady_clock::now();
    const DeviceInfo info = reset_scanner(scanner);
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
    if (output.json()) {
        output.object({{"scanner", scanner.name()}, {"version", info.version}, {"milliseconds", taken.count()}});
    } else {
        output.line("\"" + scanner.name() + "\" has restarted in " + std::to_string(taken.count()) +
                    " ms and reports version " + info.version);
    }
}

}  // namespace

void add_reset(CLI::App& app, Command_line& line)
{
    CLI::App* command = add_scanner_command(app, line, "reset", "Restart a scanner", reset_guide);
    command->callback([&line] { line.action = reset; });
}

}  // namespace vyra_tool
