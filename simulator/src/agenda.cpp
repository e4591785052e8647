#include "agenda.h"

#include <algorithm>

#include "bus.h"
#include "simulator.h"

namespace brenvozulta_simulator {
namespace {

using Clock = std::chrono::steady_clock;

bool is_timeline(const Agenda_item& item)
{
    return item.action != Agenda_item::Action::come_back;
}

void carry_out(Simulator& simulator, const std::shared_ptr<State>& state, const Agenda_item& item)
{
    switch (item.action) {
        case Agenda_item::Action::plug:
            plug(simulator, state, item.name);
            break;
        case Agenda_item::Action::unplug:
            unplug(simulator, state, item.name);
            break;
        case Agenda_item::Action::come_back:
            come_back(simulator, state, item.scanner, item.restart);
            break;
    }
}

// The first of the items that are due soonest, in the order in which they were written.
std::vector<Agenda_item>::iterator soonest(std::vector<Agenda_item>& items)
{
    return std::min_element(items.begin(), items.end(),
                            [](const Agenda_item& left, const Agenda_item& right) { return left.due < right.due; });
}

void run_agenda(Simulator& simulator, const std::shared_ptr<State>& state)
{
    Held_lock held(simulator.lock);
    std::vector<Agenda_item>& items = state->agenda.items;
    while (!state->retired && !items.empty()) {
        const auto next = soonest(items);
        if (next->after_function != function_count) {
            simulator.changed.wait(held);  // none has its time yet
        } else if (next->due > Clock::now()) {
            const Clock::time_point due = next->due;
            simulator.changed.wait_until(held, due);
        } else {
            const Agenda_item item = *next;
            items.erase(next);
            carry_out(simulator, state, item);
        }
    }
    state->agenda.running = false;
}

void add(Simulator& simulator, const std::shared_ptr<State>& state, Agenda_item item)
{
    Agenda& agenda = state->agenda;
    agenda.items.push_back(std::move(item));
    if (!agenda.running) {
        agenda.running = true;
        test_bench::start_detached([&simulator, state] { run_agenda(simulator, state); });
    }
    simulator.changed.notify_all();
}

}  // namespace

void add_return(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner,
                std::uint32_t delay_ms)
{
    const std::chrono::milliseconds delay(delay_ms);
    add(simulator, state,
        {Agenda_item::Action::come_back,
         {},
         scanner,
         scanner->restart,
         function_count,
         0,
         delay,
         Clock::now() + delay});
}

void start_timeline(Simulator& simulator, const std::shared_ptr<State>& state)
{
    stop_timeline(simulator, *state);
    state->agenda.returned.fill(0);
    const Clock::time_point start = Clock::now();
    for (const Timeline_entry& entry : state->settings.timeline) {
        const std::chrono::milliseconds delay(entry.at_ms);
        const bool timed = entry.function.empty();
        add(simulator, state,
            {entry.plug ? Agenda_item::Action::plug : Agenda_item::Action::unplug, entry.scanner, nullptr, 0,
             timed ? function_count : function_index(entry.function.c_str()), entry.count, delay,
             timed ? start + delay : Clock::time_point::max()});
    }
}

void stop_timeline(Simulator& simulator, State& state)
{
    std::vector<Agenda_item>& items = state.agenda.items;
    items.erase(std::remove_if(items.begin(), items.end(), is_timeline), items.end());
    simulator.changed.notify_all();
}

void call_returned(Simulator& simulator, State& state, std::size_t function)
{
    const std::uint64_t returned = ++state.agenda.returned[function];
    for (Agenda_item& item : state.agenda.items) {
        if (item.after_function == function && item.after_count == returned) {
            item.after_function = function_count;
            item.due = Clock::now() + item.delay;
            simulator.changed.notify_all();
        }
    }
}

}  // namespace brenvozulta_simulator
