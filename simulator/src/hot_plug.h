// Hot-plug events on their way to the host's listener.
//
// Events are delivered in order, each on a thread of its own. The next one starts when the listener has returned from
// the one before, or has been inside for a while: a host that resets a scanner waits, with a lock held, for the arrival
// that follows the removal on which its listener then waits for that lock.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>

#include "driver/driver.h"

namespace brenvozulta_simulator {

struct Simulator;
struct State;

struct Hot_plug_event {
    std::int32_t code;
    void* driver_handle;
};

struct Hot_plug {
    DriverHotPlugListener listener = nullptr;
    std::deque<Hot_plug_event> waiting;
    bool dispatching = false;  // a dispatcher thread exists; it ends when nothing waits any more
    std::uint32_t inside = 0;
    std::uint64_t entered = 0;
    std::uint64_t delivered = 0;
};

// Under the simulator's lock. Without a listener the event is dropped.
void send_event(Simulator& simulator, const std::shared_ptr<State>& state, Hot_plug_event event);

}  // namespace brenvozulta_simulator
