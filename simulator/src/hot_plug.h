// Hot-plug events on their way to the host's listener.
//
// Events are delivered in order, each on a thread of its own. The next one starts when the listener has returned from
// the one before, or has been inside for a while: a host that resets a scanner waits, with a lock held, for the arrival
// that follows the removal on which its listener then waits for that lock.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "driver/driver.h"
#include "held_lock.h"

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
    bool dispatching = false;           // a dispatcher thread exists; it ends when nothing waits any more
    std::uint64_t dropped = 0;          // counts releases: what was on its way before one does not arrive after it
    std::vector<std::uint64_t> inside;  // the threads that are on their way into the listener, or in it
    std::uint64_t entered = 0;
    std::uint64_t delivered = 0;

    // Whether another thread than the caller's is inside.
    bool others_inside() const;
};

// All under the simulator's lock.

// Makes sure that an event can be sent; throws std::system_error when there is no thread for it.
void prepare_events(Simulator& simulator, const std::shared_ptr<State>& state);
// Whether or not the driver is initialized. Without a listener the event is dropped.
void send_event(Simulator& simulator, const std::shared_ptr<State>& state, Hot_plug_event event);
// What the driver tells by itself, only while it is initialized: on a thread of its own, or on the caller's, for which
// the lock is released meanwhile.
void announce(Simulator& simulator, const std::shared_ptr<State>& state, Hot_plug_event event);
void announce_here(Simulator& simulator, const std::shared_ptr<State>& state, Held_lock& held, Hot_plug_event event);
// Nothing that was sent so far enters the listener any more.
void drop_events(State& state);

}  // namespace brenvozulta_simulator
