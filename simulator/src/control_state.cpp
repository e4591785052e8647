// Control functions for the state as a whole: reset, scenarios, timeline.
#include "control_call.h"
#include "image_source.h"
#include "scenario.h"

using namespace brenvozulta_simulator;

namespace {

// Stores the message of what failed in load, or none.
template <class Load>
int with_message(char* message, std::size_t capacity, Load load)
{
    std::string wrong;
    try {
        load();
    } catch (const std::exception& error) {
        wrong = error.what();
        Control()->last_error = wrong;
    }
    copy_text(wrong, message, capacity);
    return wrong.empty() ? 1 : 0;
}

void install(Scenario scenario)
{
    Control control;
    install_scenario(simulator(), *control, std::move(scenario));
    if (control->initialized) {
        start_timeline(simulator(), control.state());
    }
}

bool valid(const brenvozulta_sim_happening& happening)
{
    const bool in_call = happening.moment != BRENVOZULTA_SIM_AFTER_CALL;
    if (happening.moment < BRENVOZULTA_SIM_AFTER_CALL || happening.moment > BRENVOZULTA_SIM_ON_RETURN ||
        (in_call && (happening.function == nullptr || happening.at_ms != 0))) {
        return false;
    }
    if (happening.function != nullptr &&
        (function_index(happening.function) == function_count || happening.count == 0)) {
        return false;
    }
    switch (happening.what) {
        case BRENVOZULTA_SIM_UNPLUG:
        case BRENVOZULTA_SIM_PLUG:
            return valid_name(happening.scanner);
        case BRENVOZULTA_SIM_IMAGE:
            return happening.image != nullptr;
        default:
            return false;
    }
}

Timeline_entry entry_of(const brenvozulta_sim_happening& happening)
{
    Timeline_entry entry{};
    entry.moment = static_cast<Moment>(happening.moment);
    entry.function = happening.function == nullptr ? "" : happening.function;
    entry.count = happening.count;
    entry.at_ms = happening.at_ms;
    entry.what = static_cast<Timeline_entry::What>(happening.what);
    if (entry.what == Timeline_entry::What::image) {
        entry.image = delivery_of(*happening.image);
    } else {
        entry.scanner = happening.scanner;
        entry.late_ms = happening.late_ms;
    }
    return entry;
}

}  // namespace

void brenvozulta_sim_reset()
{
    Simulator& the_simulator = simulator();
    Held_lock held(the_simulator.lock);
    const std::shared_ptr<State> old = the_simulator.state;
    old->retired = true;
    old->agenda.items.clear();
    the_simulator.state = default_state(the_simulator);
    the_simulator.changed.notify_all();
    // Nothing of before happens afterwards, unless it stays inside the host.
    drop_events(*old);
    wait_for_silence(held, *old, end_all_captures(*old));
    test_bench::take_over(&old->callbacks);
}

int brenvozulta_sim_load_scenario_file(const char* path, char* message, size_t capacity)
{
    return with_message(message, capacity, [&] { install(read_scenario_file(path == nullptr ? "" : path)); });
}

int brenvozulta_sim_load_scenario_text(const char* text, const char* source, char* message, size_t capacity)
{
    return with_message(message, capacity, [&] {
        install(read_scenario(text == nullptr ? "" : text, source == nullptr ? "scenario" : source));
    });
}

size_t brenvozulta_sim_last_error(char* message, size_t capacity)
{
    return copy_text(Control()->last_error, message, capacity);
}

int brenvozulta_sim_use_image_folder(const char* folder, char* message, size_t capacity)
{
    return with_message(message, capacity, [&] {
        auto images = folder_images(folder == nullptr ? "" : folder);
        Control()->settings.images = std::move(images);
    });
}

void brenvozulta_sim_use_synthetic_images(uint64_t seed)
{
    Control()->settings.images = synthetic_images(seed);
}

int brenvozulta_sim_add_happening(const brenvozulta_sim_happening* happening)
{
    if (happening == nullptr || !valid(*happening)) {
        return 0;
    }
    const Timeline_entry entry = entry_of(*happening);
    Control control;
    return control.attempt([&] {
        if (control->initialized) {
            add_to_timeline(simulator(), control.state(), entry);
        }
        control->settings.timeline.push_back(entry);
        return true;
    });
}

int brenvozulta_sim_add_timeline(uint32_t at_ms, const char* function, uint64_t count, int32_t plug,
                                 const char* scanner)
{
    brenvozulta_sim_happening happening{};
    happening.moment = BRENVOZULTA_SIM_AFTER_CALL;
    happening.function = function;
    happening.count = count;
    happening.at_ms = at_ms;
    happening.what = plug != 0 ? BRENVOZULTA_SIM_PLUG : BRENVOZULTA_SIM_UNPLUG;
    happening.scanner = scanner;
    return brenvozulta_sim_add_happening(&happening);
}

void brenvozulta_sim_clear_timeline()
{
    Control control;
    control->settings.timeline.clear();
    stop_timeline(simulator(), *control);
}
