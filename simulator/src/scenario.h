// Scenarios: what a JSON text says about the scanners, their images and what happens to them. README.md is the
// reference.
#pragma once

#include <string>
#include <vector>

#include "identity.h"
#include "settings.h"
#include "simulator.h"

namespace brenvozulta_simulator {

struct Scenario {
    struct Scanner_entry {
        Identity identity;
        bool attached;
    };
    Settings settings;
    std::vector<Scanner_entry> scanners;
    Faults faults;
};

// Both throw std::exception with a message that names file, line and field. source stands for the file's name, and
// paths in the text start from its folder.
Scenario read_scenario_file(const std::string& path);
Scenario read_scenario(const std::string& text, const std::string& source);

// Under the simulator's lock: replaces scanners, settings and faults. Captures end without being waited for.
void install_scenario(Simulator& simulator, State& state, Scenario scenario);

}  // namespace brenvozulta_simulator
