#include "firmware.h"

#include <chrono>
#include <cstring>
#include <future>
#include <optional>
#include <thread>

#include "failure.h"
#include "output.h"

namespace vyra_tool {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// A scanner that does not leave the bus within this time after its restart was ordered stays on it.
constexpr auto departure_patience = 2s;
constexpr auto return_patience = 30s;
constexpr auto state_poll_interval = 20ms;

const char* const unfinished_advice =
    "plug the scanner out and in, look at its version with vyra info, and load the firmware again if it is still the "
    "old one";

void transfer(const Scanner& scanner, const std::vector<std::uint8_t>& image)
{
    Output::note("loading " + std::to_string(image.size()) + " bytes of firmware into \"" + scanner.name() +
                 "\": do not unplug it; this cannot be interrupted");
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

std::optional<DeviceInfo> reported(const Scanner& scanner)
{
    DeviceInfo info{};
    if (VyraBrenvoGetDeviceInfo(scanner.handle(), &info) == VYRA_OK) {
        return info;
    }
    return std::nullopt;
}

bool try_reopen(Scanner& scanner)
{
    try {
        scanner.reopen();
        return true;
    } catch (const Failure&) {
        return false;  // not yet: it may still be starting
    }
}

// The restart shows in one of three ways: the scanner comes back to the bus, it reports another version, or, when it
// restarts without leaving the bus, it goes on answering.
DeviceInfo wait_for_restart(Scanner& scanner, const DeviceInfo& before, const Presence& seen)
{
    const auto ordered = Clock::now();
    while (Clock::now() - ordered < return_patience) {
        const Presence now = presence(scanner.name());
        const bool away = now.removals > seen.removals;
        const bool back = now.arrivals > seen.arrivals;
        if ((back && try_reopen(scanner)) || !away) {
            const auto info = reported(scanner);
            if (info && (back || std::strcmp(info->version, before.version) != 0 ||
                         Clock::now() - ordered > departure_patience)) {
                return *info;
            }
        }
        std::this_thread::sleep_for(state_poll_interval);
    }
    throw Failure("the firmware was loaded, but the scanner \"" + scanner.name() + "\" did not come back",
                  VYRA_DEVICE_UNAVAIL, unfinished_advice);
}

}  // namespace

DeviceInfo update_firmware(Scanner& scanner, const std::vector<std::uint8_t>& image)
{
    if (scanner.streams()) {
        throw Failure("video runs on the scanner \"" + scanner.name() + "\": no firmware was loaded",
                      "stop the capture first");
    }
    const DeviceInfo before = scanner.info();
    const Presence seen = presence(scanner.name());
    transfer(scanner, image);
    return wait_for_restart(scanner, before, seen);
}

}  // namespace vyra_tool
