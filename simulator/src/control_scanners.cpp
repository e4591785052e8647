// Control functions for the scanners on the bus and the events about them.
#include "control_call.h"

using namespace brenvozulta_simulator;

namespace {

// Changes the bus and announces it; 0, with nothing changed, when that cannot be.
int change_bus(const char* scanner, Bus_change (*change)(Simulator&, State&, const std::string&))
{
    if (!valid_name(scanner)) {
        return 0;
    }
    Control control;
    return control.attempt([&] {
        prepare_events(simulator(), control.state());
        const Bus_change done = change(simulator(), *control, scanner);
        if (done.event) {
            announce(simulator(), control.state(), *done.event);
        }
        return done.changed;
    });
}

}  // namespace

int brenvozulta_sim_attach(const char* scanner)
{
    if (!valid_name(scanner)) {
        return 0;
    }
    Control control;
    const auto found = find_or_add_scanner(*control, scanner);
    if (found->attached) {
        return 0;
    }
    attach(simulator(), *control, found);
    return 1;
}

int brenvozulta_sim_remove(const char* scanner)
{
    Control control;
    const auto found = find_scanner(*control, scanner);
    if (found == nullptr || !found->attached) {
        return 0;
    }
    detach(simulator(), *control, found);
    return 1;
}

void brenvozulta_sim_remove_all()
{
    Control control;
    while (!control->bus.empty()) {
        detach(simulator(), *control, std::shared_ptr<Scanner>(control->bus.front()));
    }
}

int brenvozulta_sim_plug(const char* scanner)
{
    return change_bus(scanner, plug);
}

int brenvozulta_sim_unplug(const char* scanner)
{
    return change_bus(scanner, unplug);
}

void* brenvozulta_sim_handle(const char* scanner)
{
    Control control;
    const auto found = find_scanner(*control, scanner);
    return found == nullptr ? nullptr : found->handle;
}

int brenvozulta_sim_is_attached(const char* scanner)
{
    Control control;
    const auto found = find_scanner(*control, scanner);
    return found != nullptr && found->present() ? 1 : 0;
}

int brenvozulta_sim_wait_attached(const char* scanner, uint32_t timeout_ms)
{
    Control control;
    return scanner != nullptr &&
                   control.wait(timeout_ms, [&] { return find_present_scanner(*control, scanner) != nullptr; }) != 0
               ? 1
               : 0;
}

int brenvozulta_sim_is_open(const char* scanner)
{
    Control control;
    const auto found = find_scanner(*control, scanner);
    return found != nullptr && found->open ? 1 : 0;
}

int brenvozulta_sim_is_capturing(const char* scanner)
{
    Control control;
    const auto found = find_scanner(*control, scanner);
    return found != nullptr && found->capture != nullptr ? 1 : 0;
}

int brenvozulta_sim_selected_config(const char* scanner)
{
    Control control;
    const auto found = find_scanner(*control, scanner);
    return found == nullptr ? -1 : found->config;
}

int brenvozulta_sim_set_device_info(const char* scanner, const void* info)
{
    if (info == nullptr) {
        return 0;
    }
    return change_scanner(
        scanner, [info](Scanner& found) { std::memcpy(&found.identity.info, info, sizeof found.identity.info); });
}

int brenvozulta_sim_set_serial_number(const char* scanner, const char* serial_number)
{
    if (serial_number == nullptr || std::strlen(serial_number) > sizeof(DriverDeviceInfo::serial_number)) {
        return 0;
    }
    return change_scanner(scanner, [=](Scanner& found) { set_serial_number(found.identity.info, serial_number); });
}

int brenvozulta_sim_set_version(const char* scanner, int8_t major, int8_t minor, char revision)
{
    return change_scanner(scanner, [=](Scanner& found) {
        found.identity.info.version_major = major;
        found.identity.info.version_minor = minor;
        found.identity.info.version_revision = revision;
    });
}

int brenvozulta_sim_set_port_type(const char* scanner, uint32_t port_type)
{
    return change_scanner(scanner, [=](Scanner& found) { found.identity.info.port_type = port_type; });
}

int brenvozulta_sim_set_handle_reuse(int32_t reuse)
{
    if (reuse < BRENVOZULTA_SIM_REUSE_NEVER || reuse > BRENVOZULTA_SIM_REUSE_AT_ONCE) {
        return 0;
    }
    Control()->settings.reuse_handles = static_cast<Handle_reuse>(reuse);
    return 1;
}

void brenvozulta_sim_set_list_count(int32_t count, int32_t times)
{
    Control control;
    control->settings.list_count = count;
    control->settings.list_count_times = times;
}

void brenvozulta_sim_send_event(int32_t event, void* driver_handle)
{
    Control control;
    control.attempt([&] {
        send_event(simulator(), control.state(), {event, driver_handle});
        return true;
    });
}

int brenvozulta_sim_wait_events_done(uint32_t timeout_ms)
{
    Control control;
    const Hot_plug& hot_plug = control->hot_plug;
    return control.wait(timeout_ms, [&] { return hot_plug.waiting.empty() && hot_plug.inside.empty(); });
}

int brenvozulta_sim_wait_listener_inside(uint32_t count, uint32_t timeout_ms)
{
    Control control;
    const Hot_plug& hot_plug = control->hot_plug;
    return control.wait(timeout_ms, [&] { return hot_plug.entered - hot_plug.delivered >= count; });
}

uint64_t brenvozulta_sim_events_delivered()
{
    return Control()->hot_plug.delivered;
}

int brenvozulta_sim_wait_events_delivered(uint64_t count, uint32_t timeout_ms)
{
    Control control;
    return control.wait(timeout_ms, [&] { return control->hot_plug.delivered >= count; });
}
