// Control functions for the driver calls: faults, delays, blocks and the record.
#include "control_call.h"

using namespace brenvozulta_simulator;

namespace {

// Runs change(faults) for a driver function; 0 for an unknown one.
template <class Change>
int change_faults(const char* function, Change change)
{
    const std::size_t index = function_index(function);
    if (index == function_count) {
        return 0;
    }
    Control control;
    change(control->faults.of(index));
    control.changed();
    return 1;
}

}  // namespace

int brenvozulta_sim_fail(const char* function, uint32_t result, int32_t times)
{
    return change_faults(function, [=](Function_faults& faults) { faults.fault = {result, 0, times, 0}; });
}

int brenvozulta_sim_set_fault(const char* function, const brenvozulta_sim_fault* fault)
{
    if (fault == nullptr) {
        return 0;
    }
    return change_faults(function, [fault](Function_faults& faults) { faults.fault = *fault; });
}

int brenvozulta_sim_set_delay(const char* function, uint32_t ms)
{
    return change_faults(function, [ms](Function_faults& faults) { faults.delay_ms = ms; });
}

int brenvozulta_sim_set_return_delay(const char* function, uint32_t ms)
{
    return change_faults(function, [ms](Function_faults& faults) { faults.return_delay_ms = ms; });
}

int brenvozulta_sim_block(const char* function)
{
    return change_faults(function, [](Function_faults& faults) { faults.blocked = true; });
}

int brenvozulta_sim_block_return(const char* function)
{
    return change_faults(function, [](Function_faults& faults) { faults.return_blocked = true; });
}

int brenvozulta_sim_unblock(const char* function)
{
    return change_faults(function, [](Function_faults& faults) { faults.blocked = faults.return_blocked = false; });
}

int brenvozulta_sim_wait_blocked(const char* function, uint32_t count, uint32_t timeout_ms)
{
    const std::size_t index = function_index(function);
    if (index == function_count) {
        return 0;
    }
    Control control;
    const Function_faults& faults = control->faults.of(index);
    return control.wait(timeout_ms, [&] { return (faults.blocked || faults.return_blocked) && faults.held >= count; });
}

void brenvozulta_sim_set_reinitialize_result(uint32_t result)
{
    Control()->settings.reinitialize_result = result;
}

void brenvozulta_sim_set_reopen_result(uint32_t result)
{
    Control()->settings.reopen_result = result;
}

void brenvozulta_sim_set_idle_stop_result(uint32_t result)
{
    Control()->settings.idle_stop_result = result;
}

void brenvozulta_sim_set_stop_patience(uint32_t ms)
{
    Control()->settings.stop_patience_ms = ms;
}

void brenvozulta_sim_clear_calls()
{
    Control()->calls.clear();
}

size_t brenvozulta_sim_call_count()
{
    return Control()->calls.size();
}

int brenvozulta_sim_get_call(size_t index, brenvozulta_sim_call* call)
{
    Control control;
    const Call* found = control->calls.at(index);
    if (found == nullptr || call == nullptr) {
        return 0;
    }
    *call = {};
    call->order = found->order;
    call->thread = found->thread;
    call->result = found->result;
    call->finished = found->finished ? 1 : 0;
    copy_text(function_name(found->function), call->function, sizeof call->function);
    call->argument_count = static_cast<std::uint32_t>(found->arguments.size());
    for (std::size_t i = 0; i < found->arguments.size(); ++i) {
        call->arguments[i] = found->arguments[i].value;
    }
    return 1;
}

size_t brenvozulta_sim_call_text(size_t index, char* text, size_t capacity)
{
    Control control;
    const Call* found = control->calls.at(index);
    return copy_text(found == nullptr ? std::string() : to_text(*found), text, capacity);
}

size_t brenvozulta_sim_call_argument(size_t index, const char* argument, char* text, size_t capacity)
{
    Control control;
    const Call* found = control->calls.at(index);
    std::string value;
    if (found != nullptr && argument != nullptr) {
        for (const Argument& candidate : found->arguments) {
            value = std::strcmp(candidate.name, argument) == 0 ? to_text(candidate) : value;
        }
    }
    return copy_text(value, text, capacity);
}

uint64_t brenvozulta_sim_times_called(const char* function)
{
    const std::size_t index = function_index(function);
    return index == function_count ? 0 : Control()->calls.begun(index);
}

int brenvozulta_sim_wait_called(const char* function, uint64_t count, uint32_t timeout_ms)
{
    const std::size_t index = function_index(function);
    Control control;
    return index != function_count &&
                   control.wait(timeout_ms, [&] { return control->calls.begun(index) >= count; }) != 0
               ? 1
               : 0;
}

int brenvozulta_sim_wait_returned(const char* function, uint64_t count, uint32_t timeout_ms)
{
    const std::size_t index = function_index(function);
    Control control;
    return index != function_count &&
                   control.wait(timeout_ms, [&] { return control->calls.returned(index) >= count; }) != 0
               ? 1
               : 0;
}

uint64_t brenvozulta_sim_thread_id()
{
    return this_thread_id();
}
