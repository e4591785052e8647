#include "hot_plug.h"

#include <algorithm>
#include <exception>

#include "platform.h"
#include "simulator.h"

namespace brenvozulta_simulator {
namespace {

constexpr std::uint32_t listener_patience_ms = 200;

// Stands among the threads inside for the one that an event has been given to, until that begins.
constexpr std::uint64_t next_thread = 0;

bool contains(const std::vector<std::uint64_t>& threads, std::uint64_t thread)
{
    return std::find(threads.begin(), threads.end(), thread) != threads.end();
}

void forget(std::vector<std::uint64_t>& threads, std::uint64_t thread)
{
    threads.erase(std::find(threads.begin(), threads.end(), thread));
}

// On the thread on which the listener is to run; the event is of the time before so many releases.
void deliver_event(Simulator& simulator, const std::shared_ptr<State>& state, Held_lock& held, Hot_plug_event event,
                   std::uint64_t dropped)
{
    Hot_plug& hot_plug = state->hot_plug;
    const std::uint64_t thread = this_thread_id();
    hot_plug.inside.push_back(thread);
    ++hot_plug.entered;
    simulator.changed.notify_all();
    if (hot_plug.listener != nullptr && hot_plug.dropped == dropped && !state->retired) {
        const DriverHotPlugListener listener = hot_plug.listener;
        test_bench::take_over(&hot_plug);
        {
            const Unlocked unlocked(held);
            listener(event.code, event.driver_handle);
        }
        test_bench::hand_over(&state->callbacks);
    }
    forget(hot_plug.inside, thread);
    ++hot_plug.delivered;
    simulator.changed.notify_all();
}

void dispatch_events(Simulator& simulator, const std::shared_ptr<State>& state)
{
    Held_lock held(simulator.lock);
    Hot_plug& hot_plug = state->hot_plug;
    while (!state->retired && !hot_plug.waiting.empty()) {
        const Hot_plug_event event = hot_plug.waiting.front();
        hot_plug.waiting.pop_front();
        const std::uint64_t dropped = hot_plug.dropped;
        hot_plug.inside.push_back(next_thread);
        const auto deliver = [&simulator, state, event, dropped](Held_lock& delivering) {
            forget(state->hot_plug.inside, next_thread);
            deliver_event(simulator, state, delivering, event, dropped);
        };
        try {
            start_driver_thread([&simulator, deliver] {
                Held_lock delivering(simulator.lock);
                deliver(delivering);
            });
            simulator.changed.wait(held, [&] { return !contains(hot_plug.inside, next_thread); });
        } catch (const std::exception&) {
            deliver(held);  // no thread or no memory for one: then on this thread
        }
        wait_for(held, listener_patience_ms, [&] { return hot_plug.inside.empty(); });
    }
    hot_plug.waiting.clear();
    hot_plug.dispatching = false;
    simulator.changed.notify_all();
}

}  // namespace

bool Hot_plug::others_inside() const
{
    const std::uint64_t caller = this_thread_id();
    return std::any_of(inside.begin(), inside.end(), [caller](std::uint64_t thread) { return thread != caller; });
}

void prepare_events(Simulator& simulator, const std::shared_ptr<State>& state)
{
    if (state->hot_plug.listener != nullptr && !state->hot_plug.dispatching) {
        start_driver_thread([&simulator, state] { dispatch_events(simulator, state); });
        state->hot_plug.dispatching = true;
    }
}

void send_event(Simulator& simulator, const std::shared_ptr<State>& state, Hot_plug_event event)
{
    if (state->hot_plug.listener == nullptr) {
        return;
    }
    prepare_events(simulator, state);
    test_bench::hand_over(&state->hot_plug);
    state->hot_plug.waiting.push_back(event);
    simulator.changed.notify_all();
}

void announce(Simulator& simulator, const std::shared_ptr<State>& state, Hot_plug_event event)
{
    if (state->initialized) {
        send_event(simulator, state, event);
    }
}

void announce_here(Simulator& simulator, const std::shared_ptr<State>& state, Held_lock& held, Hot_plug_event event)
{
    if (state->initialized && state->hot_plug.listener != nullptr) {
        deliver_event(simulator, state, held, event, state->hot_plug.dropped);
    }
}

void drop_events(State& state)
{
    state.hot_plug.waiting.clear();
    ++state.hot_plug.dropped;
}

}  // namespace brenvozulta_simulator
