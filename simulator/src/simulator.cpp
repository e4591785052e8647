#include "simulator.h"

#include <functional>
#include <thread>

#include "bus.h"

namespace brenvozulta_simulator {
namespace {

// Handles are numbers that a host cannot mistake for an address of its own, and none is ever used twice.
constexpr std::uintptr_t first_handle = 0x51000000;

Simulator* new_simulator()
{
    auto* created = new Simulator;
    created->last_handle = first_handle;
    created->state = default_state(*created);
    return created;
}

}  // namespace

Simulator& simulator()
{
    static Simulator* const the_simulator = new_simulator();
    return *the_simulator;
}

std::shared_ptr<State> default_state(Simulator& simulator)
{
    auto state = std::make_shared<State>();
    attach(simulator, *state, find_or_add_scanner(*state, BRENVOZULTA_SIM_DEFAULT_SCANNER));
    return state;
}

std::uint64_t this_thread_id()
{
    return std::hash<std::thread::id>()(std::this_thread::get_id());
}

}  // namespace brenvozulta_simulator
