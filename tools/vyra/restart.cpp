#include "restart.h"

#include <cstring>
#include <optional>
#include <thread>

#include "failure.h"
#include "interrupt.h"

namespace vyra_tool {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto poll_interval = 20ms;

const char* const look_again = "plug the scanner out and in, and look with vyra info which version it reports";

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

}  // namespace

Restarted wait_for_restart(Scanner& scanner, const DeviceInfo& before, const Presence& seen,
                           const Restart_patience& patience)
{
    Clock::time_point left = Clock::now();  // or was to leave
    bool away = false;
    for (Clock::time_point now = left; now - left < (away ? patience.back : patience.departure + patience.back);
         now = Clock::now()) {
        if (interrupted()) {
            throw Failure("interrupted: whether the scanner \"" + scanner.name() + "\" restarted is not known",
                          look_again);
        }
        const Presence counted = presence(scanner.name());
        if (!away && counted.removals > seen.removals) {
            away = true;
            left = now;
        }
        const bool back = counted.arrivals > seen.arrivals;
        if ((back && try_reopen(scanner)) || !away) {
            const auto info = reported(scanner);
            const bool proven = back || (info && std::strcmp(info->version, before.version) != 0);
            if (info && (proven || now - left >= patience.departure)) {
                return {*info, proven};
            }
        }
        std::this_thread::sleep_for(poll_interval);
    }
    throw Failure("the scanner \"" + scanner.name() + "\" did not come back", VYRA_DEVICE_UNAVAIL, look_again,
                  Cause::scanner_gone);
}

}  // namespace vyra_tool
