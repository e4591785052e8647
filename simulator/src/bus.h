// Which scanners are there: attaching, removing, restarting, looking up. Every function is called under the simulator's
// lock.
#pragma once

#include <cstdint>
#include <memory>
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

// Attaches or detaches by name and announces it; false when it is there (or away) already.
bool plug(Simulator& simulator, const std::shared_ptr<State>& state, const std::string& name);
bool unplug(Simulator& simulator, const std::shared_ptr<State>& state, const std::string& name);

// Takes the scanner off the bus and lets it come back, as the settings say, under the same handle.
void restart(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner);
// The end of that restart.
void come_back(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner,
               std::uint64_t restart);

void fill_entry(const Scanner& scanner, DriverDeviceEntry& entry);

}  // namespace brenvozulta_simulator
