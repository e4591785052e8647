// What happens by itself: the scenario's timeline and the returns of restarting scanners. What has a time happens on a
// thread that exists only while something is left to do; what belongs inside a call happens on the caller's.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "call_record.h"
#include "held_lock.h"
#include "hot_plug.h"
#include "timeline_entry.h"

namespace brenvozulta_simulator {

struct Scanner;
struct Simulator;
struct State;

// The moment of a call that something waits for.
struct Awaited_call {
    Moment moment;
    std::size_t function;
    std::uint64_t count;
};

struct Agenda_item {
    enum class Action { timeline, announce, come_back };
    Action action;
    Timeline_entry entry;              // that happens
    Hot_plug_event event;              // to announce, late
    std::shared_ptr<Scanner> scanner;  // that comes back, from this of its restarts
    std::uint64_t restart;

    bool waiting;  // for the call; due is not known yet
    Awaited_call call;
    std::chrono::steady_clock::time_point due;
};

struct Agenda {
    std::vector<Agenda_item> items;
    bool running = false;
    std::chrono::steady_clock::time_point started;                                  // of the timeline
    std::array<std::array<std::uint64_t, function_count>, moment_count> reached{};  // calls since then, by moment
};

// All under the simulator's lock. What adds something throws std::system_error, and adds nothing, when there is no
// thread to be had.
void add_return(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner,
                std::uint64_t restart, std::uint32_t delay_ms);
void start_timeline(Simulator& simulator, const std::shared_ptr<State>& state);
// Into the timeline that runs; a time that has passed is now.
void add_to_timeline(Simulator& simulator, const std::shared_ptr<State>& state, const Timeline_entry& entry);
void stop_timeline(Simulator& simulator, State& state);
// A call of the function has come to this moment: what waits for it gets its time or, inside the call, happens now; the
// lock is released meanwhile.
void reach(Simulator& simulator, const std::shared_ptr<State>& state, Held_lock& held, Moment moment,
           std::size_t function);

}  // namespace brenvozulta_simulator
