// What happens later on the bus: the scenario's timeline and the returns of restarting scanners, on a thread that
// exists only while something is left to do.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "call_record.h"

namespace brenvozulta_simulator {

struct Scanner;
struct Simulator;
struct State;

struct Agenda_item {
    enum class Action { plug, unplug, come_back };
    Action action;
    std::string name;                  // of the scanner to plug or unplug
    std::shared_ptr<Scanner> scanner;  // that comes back, from this of its restarts
    std::uint64_t restart;

    std::size_t after_function;  // function_count: due is known
    std::uint64_t after_count;
    std::chrono::milliseconds delay;
    std::chrono::steady_clock::time_point due;
};

struct Agenda {
    std::vector<Agenda_item> items;
    bool running = false;
    std::array<std::uint64_t, function_count> returned{};  // calls since the timeline was started
};

// All under the simulator's lock.
void add_return(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner,
                std::uint32_t delay_ms);
void start_timeline(Simulator& simulator, const std::shared_ptr<State>& state);
void stop_timeline(Simulator& simulator, State& state);
// Gives the items that wait for this call of the function their time.
void call_returned(Simulator& simulator, State& state, std::size_t function);

}  // namespace brenvozulta_simulator
