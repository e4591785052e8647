// Control functions for images and the acquisition callback.
#include "control_call.h"

using namespace brenvozulta_simulator;

namespace {

// The capturing scanner that is named; found stays null for none named. False for a name that is not known.
bool find_named(const State& state, const char* name, std::shared_ptr<Scanner>& found)
{
    found = find_scanner(state, name);
    return name == nullptr || found != nullptr;
}

std::uint64_t start_delivery(Control& control, const char* scanner, const std::shared_ptr<Delivery>& delivery)
{
    std::shared_ptr<Scanner> found;
    const int started = control.attempt([&] {
        return find_named(*control, scanner, found) && deliver(simulator(), control.state(), found.get(), delivery);
    });
    return started != 0 ? delivery->ticket : 0;
}

std::shared_ptr<Delivery> find_delivery(const State& state, std::uint64_t ticket)
{
    const auto found = state.deliveries.find(ticket);
    return found == state.deliveries.end() ? nullptr : found->second;
}

int wait_done(Control& control, const Delivery& delivery, std::uint32_t timeout_ms, std::int32_t* callback_result)
{
    control.wait(timeout_ms, [&] { return delivery.progress >= Delivery::Progress::done; });
    if (delivery.progress != Delivery::Progress::done) {
        return 0;
    }
    if (callback_result != nullptr) {
        *callback_result = delivery.callback_result;
    }
    return 1;
}

}  // namespace

brenvozulta_sim_acquisition brenvozulta_sim_callback()
{
    return Control()->callback;
}

void* brenvozulta_sim_callback_context()
{
    return Control()->context;
}

int brenvozulta_sim_set_frame_rate(double frames_per_second)
{
    if (!(frames_per_second >= 0 && frames_per_second <= frame_rate_max)) {
        return 0;
    }
    Control control;
    control->settings.frame_rate = frames_per_second;
    control.changed();
    return 1;
}

uint64_t brenvozulta_sim_deliver_async(const brenvozulta_sim_image* image)
{
    if (image == nullptr) {
        return 0;
    }
    const auto delivery = delivery_of(*image);
    Control control;
    return start_delivery(control, image->scanner, delivery);
}

int brenvozulta_sim_deliver(const brenvozulta_sim_image* image, uint32_t timeout_ms, int32_t* callback_result)
{
    if (image == nullptr) {
        return 0;
    }
    const auto delivery = delivery_of(*image);
    Control control;
    return start_delivery(control, image->scanner, delivery) == 0
               ? 0
               : wait_done(control, *delivery, timeout_ms, callback_result);
}

uint64_t brenvozulta_sim_deliver_next(const char* scanner)
{
    auto delivery = std::make_shared<Delivery>();
    delivery->next_of_source = true;
    Control control;
    return start_delivery(control, scanner, delivery);
}

int brenvozulta_sim_wait_delivery_begun(uint64_t ticket, uint32_t timeout_ms)
{
    Control control;
    const auto delivery = find_delivery(*control, ticket);
    if (delivery == nullptr) {
        return 0;
    }
    control.wait(timeout_ms, [&] { return delivery->progress != Delivery::Progress::waiting; });
    return delivery->progress == Delivery::Progress::begun || delivery->progress == Delivery::Progress::done ? 1 : 0;
}

int brenvozulta_sim_wait_delivery_done(uint64_t ticket, uint32_t timeout_ms, int32_t* callback_result)
{
    Control control;
    const auto delivery = find_delivery(*control, ticket);
    return delivery == nullptr ? 0 : wait_done(control, *delivery, timeout_ms, callback_result);
}

uint64_t brenvozulta_sim_callbacks_entered()
{
    return Control()->callbacks.entered;
}

uint64_t brenvozulta_sim_callbacks_returned()
{
    return Control()->callbacks.returned;
}

int brenvozulta_sim_wait_callbacks_entered(uint64_t count, uint32_t timeout_ms)
{
    Control control;
    return control.wait(timeout_ms, [&] { return control->callbacks.entered >= count; });
}

int brenvozulta_sim_wait_callbacks_returned(uint64_t count, uint32_t timeout_ms)
{
    Control control;
    return control.wait(timeout_ms, [&] { return control->callbacks.returned >= count; });
}

uint32_t brenvozulta_sim_callbacks_inside()
{
    Control control;
    return static_cast<std::uint32_t>(control->callbacks.entered - control->callbacks.returned);
}

int brenvozulta_sim_wait_callbacks_inside(uint32_t count, uint32_t timeout_ms)
{
    Control control;
    return control.wait(timeout_ms, [&] { return control->callbacks.entered - control->callbacks.returned == count; });
}

uint32_t brenvozulta_sim_acquisition_threads()
{
    const Control control;
    return simulator().acquisition_threads;
}

int brenvozulta_sim_wait_acquisition_threads(uint32_t count, uint32_t timeout_ms)
{
    Control control;
    const bool in_time =
        wait_for(control.held(), timeout_ms, [count] { return simulator().acquisition_threads == count; });
    test_bench::take_over(&control->callbacks);
    return in_time ? 1 : 0;
}
