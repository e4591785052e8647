// The frame through which every driver function runs.
#pragma once

#include <utility>
#include <vector>

#include "bus.h"
#include "capture.h"
#include "platform.h"
#include "simulator.h"

namespace brenvozulta_simulator {

// One call of a driver function: it is recorded, held up by blocks and delays, and perhaps given another result. The
// simulator's lock is held from the construction on, but for those waits.
class Driver_call {
public:
    Driver_call(const char* function, std::vector<Argument> arguments);
    Driver_call(const Driver_call&) = delete;
    Driver_call& operator=(const Driver_call&) = delete;

    Simulator& simulator() const { return simulator_; }
    const std::shared_ptr<State>& state() const { return state_; }
    Held_lock& held() { return held_; }

    // What comes before the work: what holds the call up, and what happens on its entry.
    void enter();
    // Holds the call up and takes its fault, as what is configured says; once more when the call has changed that.
    void meet_faults();
    bool carries_out() const { return !fault_ || fault_->carry_out; }
    // What comes after it.
    void leave();
    // Records the call's return; the result is the fault's where there is one.
    std::uint32_t finish(std::uint32_t result);

private:
    void hold_up(const bool& blocked, const std::uint32_t& delay_ms);

    Simulator& simulator_;
    const std::size_t function_;
    Held_lock held_;
    const std::shared_ptr<State> state_;
    std::uint64_t id_ = 0;
    std::optional<Fault_outcome> fault_;
};

// What a function answers when the process is ending: a thread that is no more may have left the lock locked, and there
// is nothing left to drive. What a host ends has then ended.
std::uint32_t result_at_process_end(const char* function);

// Runs work(call) under the simulator's lock as the named function. No exception leaves it.
template <class Work>
std::uint32_t run_driver_call(const char* function, std::vector<Argument> arguments, Work work) noexcept
{
    if (other_threads_are_gone()) {
        return result_at_process_end(function);
    }
    try {
        Driver_call call(function, std::move(arguments));
        std::uint32_t result = driver_ok;
        try {
            call.enter();
            if (call.carries_out()) {
                result = work(call);
            }
            call.leave();
        } catch (const std::exception&) {
            result = driver_internal;
        }
        return call.finish(result);
    } catch (const std::exception&) {
        return driver_internal;
    }
}

// The same for a function that needs QXDR_Initialize before.
template <class Work>
std::uint32_t run_initialized_call(const char* function, std::vector<Argument> arguments, Work work) noexcept
{
    return run_driver_call(function, std::move(arguments), [&work](Driver_call& call) {
        return call.state()->initialized && !call.state()->retired ? work(call) : driver_not_initialized;
    });
}

// The scanner behind a handle: driver_ok, driver_bad_handle for one never given out, driver_scanner_gone for one that
// is off the bus.
std::uint32_t find_by_handle(const State& state, const void* driver_handle, std::shared_ptr<Scanner>& scanner);

// The same for a function of one open scanner; work(call, scanner) runs only with such a one.
template <class Work>
std::uint32_t run_scanner_call(const char* function, std::vector<Argument> arguments, const void* driver_handle,
                               Work work) noexcept
{
    return run_initialized_call(function, std::move(arguments), [&work, driver_handle](Driver_call& call) {
        std::shared_ptr<Scanner> scanner;
        const std::uint32_t found = find_by_handle(*call.state(), driver_handle, scanner);
        if (found != driver_ok) {
            return found;
        }
        return scanner->open ? work(call, scanner) : driver_wrong_state;
    });
}

}  // namespace brenvozulta_simulator
