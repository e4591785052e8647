#include "driver_call.h"

namespace brenvozulta_simulator {

Driver_call::Driver_call(const char* function, std::vector<Argument> arguments)
    : simulator_(brenvozulta_simulator::simulator()),
      function_(function_index(function)),
      held_(simulator_.lock),
      state_(simulator_.state)
{
    id_ = state_->calls.begin(function_, this_thread_id(), std::move(arguments));
    simulator_.changed.notify_all();
    Function_faults& faults = state_->faults.of(function_);
    ++faults.held;
    simulator_.changed.wait(held_, [&] { return state_->retired || !faults.blocked; });
    --faults.held;
    wait_for(held_, faults.delay_ms, [&] { return state_->retired; });
    fault_ = state_->faults.take(function_);
}

std::uint32_t Driver_call::finish(std::uint32_t result)
{
    result = fault_ ? fault_->result : result;
    state_->calls.finish(id_, function_, result);
    call_returned(simulator_, *state_, function_);
    simulator_.changed.notify_all();
    return result;
}

std::uint32_t find_by_handle(const State& state, const void* driver_handle, std::shared_ptr<Scanner>& scanner)
{
    const auto found = state.handles.find(driver_handle);
    if (found == state.handles.end()) {
        return result_bad_handle;
    }
    scanner = found->second;
    return scanner->handle == driver_handle && scanner->present() ? result_ok : result_scanner_gone;
}

}  // namespace brenvozulta_simulator
