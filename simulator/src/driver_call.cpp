#include "driver_call.h"

#include <algorithm>
#include <string_view>

namespace brenvozulta_simulator {

std::uint32_t result_at_process_end(const char* function)
{
    constexpr std::string_view ends[] = {"QXDR_StopCapture", "QXDR_CloseDevice", "QXDR_Release"};
    const bool is_end = std::find(std::begin(ends), std::end(ends), function) != std::end(ends);
    return is_end ? driver_ok : driver_not_initialized;
}

Driver_call::Driver_call(const char* function, std::vector<Argument> arguments)
    : simulator_(brenvozulta_simulator::simulator()),
      function_(function_index(function)),
      held_(simulator_.lock),
      state_(simulator_.state)
{
    id_ = state_->calls.begin(function_, this_thread_id(), std::move(arguments));
    simulator_.changed.notify_all();
}

void Driver_call::hold_up(const bool& blocked, const std::uint32_t& delay_ms)
{
    Function_faults& faults = state_->faults.of(function_);
    ++faults.held;
    simulator_.changed.notify_all();
    simulator_.changed.wait(held_, [&] { return state_->retired || !blocked; });
    --faults.held;
    wait_for(held_, delay_ms, [&] { return state_->retired; });
}

void Driver_call::meet_faults()
{
    const Function_faults& faults = state_->faults.of(function_);
    hold_up(faults.blocked, faults.delay_ms);
    fault_ = state_->faults.take(function_);
}

void Driver_call::enter()
{
    meet_faults();
    reach(simulator_, state_, held_, Moment::on_entry, function_);
}

void Driver_call::leave()
{
    const Function_faults& faults = state_->faults.of(function_);
    reach(simulator_, state_, held_, Moment::on_return, function_);
    hold_up(faults.return_blocked, faults.return_delay_ms);
}

std::uint32_t Driver_call::finish(std::uint32_t result)
{
    result = fault_ ? fault_->result : result;
    state_->calls.finish(id_, function_, result);
    reach(simulator_, state_, held_, Moment::after_call, function_);
    simulator_.changed.notify_all();
    return result;
}

std::uint32_t find_by_handle(const State& state, const void* driver_handle, std::shared_ptr<Scanner>& scanner)
{
    const auto found = state.handles.find(driver_handle);
    if (found == state.handles.end()) {
        return driver_bad_handle;
    }
    scanner = found->second;
    return scanner->handle == driver_handle && scanner->present() ? driver_ok : driver_scanner_gone;
}

}  // namespace brenvozulta_simulator
