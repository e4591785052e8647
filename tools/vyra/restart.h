// A scanner that restarts: how long it is waited for, and how its return is told from no restart at all.
#pragma once

#include <chrono>

#include "session.h"

namespace vyra_tool {

struct Restart_patience {
    std::chrono::milliseconds departure{10'000};  // a scanner that has not left the bus by then does not restart
    std::chrono::milliseconds back{30'000};       // from its departure
};

struct Restarted {
    DeviceInfo info;  // what the scanner reports now; it is open
    bool proven;      // it came back to the bus, or reports another version than before
};

// Waits for the end of a restart that was ordered after `seen` was counted; opens the scanner anew when it left the
// bus. Throws a Failure when it does not come back, or when the user ends the wait.
Restarted wait_for_restart(Scanner& scanner, const DeviceInfo& before, const Presence& seen,
                           const Restart_patience& patience = {});

}  // namespace vyra_tool
