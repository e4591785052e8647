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

}  // namespace

void brenvozulta_sim_reset()
{
    Simulator& the_simulator = simulator();
    Held_lock held(the_simulator.lock);
    const std::shared_ptr<State> old = the_simulator.state;
    old->retired = true;
    old->hot_plug.waiting.clear();
    old->agenda.items.clear();
    the_simulator.state = default_state(the_simulator);
    the_simulator.changed.notify_all();
    // Nothing of before happens afterwards, unless it stays inside the host.
    const auto captures = end_all_captures(*old);
    wait_for(held, old->settings.stop_patience_ms, [&] { return have_ended(captures) && old->hot_plug.inside == 0; });
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

int brenvozulta_sim_add_timeline(uint32_t at_ms, const char* function, uint64_t count, int32_t plug,
                                 const char* scanner)
{
    if (!valid_name(scanner) || (function != nullptr && (function_index(function) == function_count || count == 0))) {
        return 0;
    }
    Control control;
    control->settings.timeline.push_back({at_ms, function == nullptr ? "" : function, count, plug != 0, scanner});
    if (control->initialized) {
        start_timeline(simulator(), control.state());
    }
    return 1;
}

void brenvozulta_sim_clear_timeline()
{
    Control control;
    control->settings.timeline.clear();
    stop_timeline(simulator(), *control);
}
