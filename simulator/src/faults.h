// Results, delays and blocks that a test or a scenario lays upon driver functions. Part of the simulator's state, under
// its lock.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "brenvozulta_simulator/control.h"
#include "call_record.h"

namespace brenvozulta_simulator {

struct Fault_outcome {
    std::uint32_t result;
    bool carry_out;
};

struct Function_faults {
    brenvozulta_sim_fault fault{};
    std::uint32_t delay_ms = 0;
    std::uint32_t return_delay_ms = 0;
    bool blocked = false;
    bool return_blocked = false;
    std::uint32_t held = 0;  // calls that a block holds now
};

class Faults {
public:
    Function_faults& of(std::size_t function) { return functions_[function]; }
    // What the fault of a function says about the call that is being made; uses it up.
    std::optional<Fault_outcome> take(std::size_t function);

private:
    std::array<Function_faults, function_count> functions_;
};

}  // namespace brenvozulta_simulator
