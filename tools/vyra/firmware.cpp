#include "firmware.h"

#include <chrono>
#include <future>
#include <nlohmann/json.hpp>

#include "failure.h"
#include "interrupt.h"
#include "output.h"

namespace vyra_tool {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

const char* const unfinished_advice =
    "plug the scanner out and in, look at its version with vyra info, and load the firmware again if it is still the "
    "old one";

void transfer(const Scanner& scanner, const std::vector<std::uint8_t>& image)
{
    const Uninterruptible transfer_under_way;
    if (interrupted()) {
        throw Failure("interrupted: no firmware was loaded", "run the command again");
    }
    Output::note("loading " + std::to_string(image.size()) + " bytes of firmware into \"" + scanner.name() +
                 "\": do not unplug it and do not close this window; this cannot be interrupted");
    Progress progress;
    const auto begin = Clock::now();
    std::future<int> result = std::async(
        std::launch::async, [&scanner, &image] { return VyraPutMemory(scanner.handle(), image.data(), image.size()); });
    while (result.wait_for(200ms) != std::future_status::ready) {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin).count();
        progress.show("loading firmware, " + std::to_string(seconds) + " s");
    }
    progress.clear();
    if (const int status = result.get(); status != VYRA_OK) {
        throw Failure("cannot load the firmware into \"" + scanner.name() + "\"", status, unfinished_advice);
    }
}

}  // namespace

Restarted update_firmware(Scanner& scanner, const std::vector<std::uint8_t>& image, const Restart_patience& patience)
{
    if (scanner.streams()) {
        throw Failure("video runs on the scanner \"" + scanner.name() + "\": no firmware was loaded",
                      "stop the capture first");
    }
    const DeviceInfo before = scanner.info();
    const Presence seen = presence(scanner.name());
    transfer(scanner, image);
    Output::note("the firmware was loaded; waiting for the scanner to restart");
    return wait_for_restart(scanner, before, seen, patience);
}

void report_update(const Scanner& scanner, const std::string& version_before, const Restarted& restarted,
                   Output& output)
{
    const std::string version = restarted.info.version;
    if (output.json()) {
        output.object({{"scanner", scanner.name()},
                       {"version_before", version_before},
                       {"version", version},
                       {"restarted", restarted.proven}});
    } else {
        output.line("\"" + scanner.name() + "\" had version " + version_before + " and now reports " + version);
    }
    if (!restarted.proven) {
        throw Failure("the firmware was loaded, but \"" + scanner.name() +
                          "\" did not restart: it has not left the bus and reports the version of before",
                      "plug the scanner out and in, then look at its version with vyra info");
    }
}

}  // namespace vyra_tool
