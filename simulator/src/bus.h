// Which scanners are there: attaching, removing, restarting, looking up. Every function is called under the simulator's
// lock.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "simulator.h"

namespace brenvozulta_simulator {

// An exact match wins over one in another case; null when there is none.
std::shared_ptr<Scanner> find_scanner(const State& state, const char* name);
// The same among the scanners that answer on the bus.
std::shared_ptr<Scanner> find_present_scanner(const State& state, const char* name);
std::shared_ptr<Scanner> find_or_add_scanner(State& state, const std::string& name);

void attach(Simulator& simulator, State& state, const std::shared_ptr<Scanner>& scanner);
// Ends its capture without waiting for it, as a pulled cable does.
void detach(Simulator& simulator, State& state, const std::shared_ptr<Scanner>& scanner);

// What has become of the bus, and the event that tells of it, if any.
struct Bus_change {
    bool changed = false;
    std::optional<Hot_plug_event> event;
};

// Attaches or detaches by name; no change when it is there (or away) already.
Bus_change plug(Simulator& simulator, State& state, const std::string& name);
Bus_change unplug(Simulator& simulator, State& state, const std::string& name);

// Takes the scanner off the bus and lets it come back, as the settings say, under the same handle. Throws
// std::system_error, with nothing changed, when there are no threads for that.
void restart(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner);
// The end of that restart, and the event that tells of it; none when the scanner is no longer in it.
std::optional<Hot_plug_event> come_back(Simulator& simulator, Scanner& scanner, std::uint64_t restart);

// The host has done with the handle of a scanner that is gone.
void forget_handle(State& state, Scanner& scanner);

void fill_entry(const Scanner& scanner, DriverDeviceEntry& entry);

}  // namespace brenvozulta_simulator
