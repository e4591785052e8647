#include "hot_plug.h"

#include "simulator.h"

namespace brenvozulta_simulator {
namespace {

constexpr std::uint32_t listener_patience_ms = 200;

void deliver_event(Simulator& simulator, const std::shared_ptr<State>& state, Hot_plug_event event)
{
    Held_lock held(simulator.lock);
    Hot_plug& hot_plug = state->hot_plug;
    const DriverHotPlugListener listener = state->retired ? nullptr : hot_plug.listener;
    ++hot_plug.entered;
    simulator.changed.notify_all();
    if (listener != nullptr) {
        test_bench::take_over(&hot_plug);
        held.unlock();
        listener(event.code, event.driver_handle);
        held.lock();
        test_bench::hand_over(&state->callbacks);
    }
    --hot_plug.inside;
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
        const std::uint64_t turn = hot_plug.entered + 1;
        ++hot_plug.inside;
        test_bench::start_detached([&simulator, state, event] { deliver_event(simulator, state, event); });
        simulator.changed.wait(held, [&] { return hot_plug.entered >= turn; });
        wait_for(held, listener_patience_ms, [&] { return hot_plug.inside == 0; });
    }
    hot_plug.waiting.clear();
    hot_plug.dispatching = false;
    simulator.changed.notify_all();
}

}  // namespace

void send_event(Simulator& simulator, const std::shared_ptr<State>& state, Hot_plug_event event)
{
    Hot_plug& hot_plug = state->hot_plug;
    if (hot_plug.listener == nullptr) {
        return;
    }
    test_bench::hand_over(&hot_plug);
    hot_plug.waiting.push_back(event);
    if (!hot_plug.dispatching) {
        hot_plug.dispatching = true;
        test_bench::start_detached([&simulator, state] { dispatch_events(simulator, state); });
    }
    simulator.changed.notify_all();
}

}  // namespace brenvozulta_simulator
