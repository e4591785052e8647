#include "agenda.h"

#include <algorithm>
#include <exception>
#include <functional>

#include "bus.h"
#include "capture.h"
#include "platform.h"
#include "simulator.h"

namespace brenvozulta_simulator {
namespace {

using Clock = std::chrono::steady_clock;
using What = Timeline_entry::What;
using Action = Agenda_item::Action;

void run_agenda(Simulator& simulator, const std::shared_ptr<State>& state);

void add(Simulator& simulator, const std::shared_ptr<State>& state, Agenda_item item)
{
    Agenda& agenda = state->agenda;
    if (!agenda.running) {
        start_driver_thread([&simulator, state] { run_agenda(simulator, state); });
        agenda.running = true;
    }
    agenda.items.push_back(std::move(item));
    simulator.changed.notify_all();
}

// On the agenda's thread, which itself tells what no other thread, or no memory for one, can be had for.
void announce_somehow(Simulator& simulator, const std::shared_ptr<State>& state, Held_lock& held, Hot_plug_event event)
{
    try {
        announce(simulator, state, event);
    } catch (const std::exception&) {
        announce_here(simulator, state, held, event);
    }
}

void announce_late(Simulator& simulator, const std::shared_ptr<State>& state, Hot_plug_event event,
                   std::uint32_t late_ms)
{
    Agenda_item item{};
    item.action = Action::announce;
    item.event = event;
    item.due = Clock::now() + std::chrono::milliseconds(late_ms);
    add(simulator, state, std::move(item));
}

void change_bus(Simulator& simulator, const std::shared_ptr<State>& state, Held_lock& held, const Timeline_entry& entry)
{
    const Bus_change change =
        entry.what == What::plug ? plug(simulator, *state, entry.scanner) : unplug(simulator, *state, entry.scanner);
    const auto event = change.event;
    if (!event) {
        return;
    }
    if (entry.late_ms > 0) {
        announce_late(simulator, state, *event, entry.late_ms);
    } else if (entry.moment == Moment::after_call) {
        announce_somehow(simulator, state, held, *event);
    } else {
        announce_here(simulator, state, held, *event);
    }
}

void happen(Simulator& simulator, const std::shared_ptr<State>& state, Held_lock& held, const Timeline_entry& entry)
{
    if (entry.what != What::image) {
        change_bus(simulator, state, held, entry);
        return;
    }
    const auto delivery = std::make_shared<Delivery>(*entry.image);
    if (deliver(simulator, state, nullptr, delivery) && entry.moment != Moment::after_call) {
        wait_for_return(held, *state, *delivery);
    }
}

void carry_out(Simulator& simulator, const std::shared_ptr<State>& state, Held_lock& held, const Agenda_item& item)
{
    switch (item.action) {
        case Action::timeline:
            happen(simulator, state, held, item.entry);
            break;
        case Action::announce:
            announce_somehow(simulator, state, held, item.event);
            break;
        case Action::come_back:
            if (const auto event = come_back(simulator, *item.scanner, item.restart)) {
                announce_somehow(simulator, state, held, *event);
            }
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
        if (next->waiting) {
            simulator.changed.wait(held);  // none has its time yet
        } else if (next->due > Clock::now()) {
            const Clock::time_point due = next->due;
            simulator.changed.wait_until(held, due);
        } else {
            const Agenda_item item = *next;
            items.erase(next);
            try {
                carry_out(simulator, state, held, item);
            } catch (const std::exception&) {
                // There is no thread or memory for it: as a driver that runs out of them, it goes on without.
            }
        }
    }
    state->agenda.running = false;
}

// Added to a timeline that has gone on for a while: what its moment has passed for happens now.
Agenda_item item_of(const Agenda& agenda, const Timeline_entry& entry)
{
    const std::chrono::milliseconds delay(entry.at_ms);
    Agenda_item item{};
    item.action = Action::timeline;
    item.entry = entry;
    if (entry.function.empty()) {
        item.due = agenda.started + delay;
        return item;
    }
    item.call = {entry.moment, function_index(entry.function.c_str()), entry.count};
    item.waiting = entry.moment != Moment::after_call ||
                   agenda.reached[static_cast<std::size_t>(Moment::after_call)][item.call.function] < entry.count;
    item.due = item.waiting ? Clock::time_point::max() : Clock::now() + delay;
    return item;
}

}  // namespace

void add_return(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner,
                std::uint64_t restart, std::uint32_t delay_ms)
{
    Agenda_item item{};
    item.action = Action::come_back;
    item.scanner = scanner;
    item.restart = restart;
    item.due = Clock::now() + std::chrono::milliseconds(delay_ms);
    add(simulator, state, std::move(item));
}

void start_timeline(Simulator& simulator, const std::shared_ptr<State>& state)
{
    stop_timeline(simulator, *state);
    state->agenda.reached = {};
    state->agenda.started = Clock::now();
    for (const Timeline_entry& entry : state->settings.timeline) {
        add_to_timeline(simulator, state, entry);
    }
}

void add_to_timeline(Simulator& simulator, const std::shared_ptr<State>& state, const Timeline_entry& entry)
{
    add(simulator, state, item_of(state->agenda, entry));
}

void stop_timeline(Simulator& simulator, State& state)
{
    std::vector<Agenda_item>& items = state.agenda.items;
    const auto returns = [](const Agenda_item& item) { return item.action == Action::come_back; };
    items.erase(std::stable_partition(items.begin(), items.end(), returns), items.end());
    simulator.changed.notify_all();
}

void reach(Simulator& simulator, const std::shared_ptr<State>& state, Held_lock& held, Moment moment,
           std::size_t function)
{
    Agenda& agenda = state->agenda;
    const std::uint64_t count = ++agenda.reached[static_cast<std::size_t>(moment)][function];
    const auto awaits = [=](const Agenda_item& item) {
        return item.waiting && item.call.moment == moment && item.call.function == function && item.call.count == count;
    };
    if (moment == Moment::after_call) {
        for (Agenda_item& item : agenda.items) {
            if (awaits(item)) {
                item.waiting = false;
                item.due = Clock::now() + std::chrono::milliseconds(item.entry.at_ms);
                simulator.changed.notify_all();
            }
        }
        return;
    }
    const auto first = std::stable_partition(agenda.items.begin(), agenda.items.end(), std::not_fn(awaits));
    const std::vector<Agenda_item> now(first, agenda.items.end());
    agenda.items.erase(first, agenda.items.end());
    for (const Agenda_item& item : now) {
        happen(simulator, state, held, item.entry);
    }
}

}  // namespace brenvozulta_simulator
