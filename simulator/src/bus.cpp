#include "bus.h"

#include <algorithm>
#include <cstring>

#include "capture.h"

namespace brenvozulta_simulator {
namespace {

char lower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool equal_but_for_case(const std::string& left, const std::string& right)
{
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(), [](char a, char b) { return lower(a) == lower(b); });
}

template <class Condition>
std::shared_ptr<Scanner> find_named(const State& state, const char* name, Condition condition)
{
    std::shared_ptr<Scanner> found;
    for (const auto& scanner : state.scanners) {
        if (!condition(*scanner)) {
            continue;
        }
        if (scanner->identity.name == name) {
            return scanner;
        }
        if (found == nullptr && equal_but_for_case(scanner->identity.name, name)) {
            found = scanner;
        }
    }
    return found;
}

void power_up(Scanner& scanner)
{
    scanner.leds = {};
    scanner.config = default_config;
    if (scanner.firmware_pending) {
        scanner.firmware_pending = false;
        scanner.identity.info.version_major = static_cast<std::int8_t>(scanner.firmware_version[0]);
        scanner.identity.info.version_minor = static_cast<std::int8_t>(scanner.firmware_version[1]);
        scanner.identity.info.version_revision = scanner.firmware_version[2];
    }
}

// Handles that may be given out again are, the latest first.
void* next_handle(Simulator& simulator, State& state)
{
    if (state.free_handles.empty()) {
        simulator.last_handle += 0x10;
        return reinterpret_cast<void*>(simulator.last_handle);
    }
    void* const handle = state.free_handles.back();
    state.free_handles.pop_back();
    return handle;
}

}  // namespace

std::shared_ptr<Scanner> find_scanner(const State& state, const char* name)
{
    return name == nullptr ? nullptr : find_named(state, name, [](const Scanner&) { return true; });
}

std::shared_ptr<Scanner> find_present_scanner(const State& state, const char* name)
{
    return find_named(state, name, [](const Scanner& scanner) { return scanner.present(); });
}

std::shared_ptr<Scanner> find_or_add_scanner(State& state, const std::string& name)
{
    for (const auto& scanner : state.scanners) {
        if (scanner->identity.name == name) {
            return scanner;
        }
    }
    auto scanner = std::make_shared<Scanner>();
    scanner->identity = default_identity(name);
    state.scanners.push_back(scanner);
    return scanner;
}

void attach(Simulator& simulator, State& state, const std::shared_ptr<Scanner>& scanner)
{
    forget_handle(state, *scanner);
    scanner->handle = next_handle(simulator, state);
    scanner->keeps_handle = true;
    scanner->attached = true;
    scanner->restarting = false;
    scanner->open = false;
    power_up(*scanner);
    state.bus.push_back(scanner);
    state.handles[scanner->handle] = scanner;
    simulator.changed.notify_all();
}

void detach(Simulator& simulator, State& state, const std::shared_ptr<Scanner>& scanner)
{
    const bool held_by_host = scanner->open && state.settings.reuse_handles != Handle_reuse::at_once;
    scanner->attached = false;
    scanner->restarting = false;
    scanner->open = false;
    if (!held_by_host) {
        forget_handle(state, *scanner);
    }
    end_capture(*scanner);
    state.bus.erase(std::remove(state.bus.begin(), state.bus.end(), scanner), state.bus.end());
    simulator.changed.notify_all();
}

void forget_handle(State& state, Scanner& scanner)
{
    if (scanner.keeps_handle && state.settings.reuse_handles != Handle_reuse::never) {
        state.free_handles.push_back(scanner.handle);
    }
    scanner.keeps_handle = false;
}

Bus_change plug(Simulator& simulator, State& state, const std::string& name)
{
    const auto scanner = find_or_add_scanner(state, name);
    if (scanner->attached) {
        return {};
    }
    attach(simulator, state, scanner);
    return {true, Hot_plug_event{driver_event_plugged, scanner->handle}};
}

Bus_change unplug(Simulator& simulator, State& state, const std::string& name)
{
    const auto scanner = find_scanner(state, name.c_str());
    if (scanner == nullptr || !scanner->attached) {
        return {};
    }
    const bool announced = scanner->restarting && state.settings.restart.announce_unplug != 0;
    detach(simulator, state, scanner);
    const Hot_plug_event event{driver_event_unplugged, scanner->handle};
    return {true, announced ? std::nullopt : std::optional<Hot_plug_event>(event)};
}

void restart(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner)
{
    const brenvozulta_sim_restart& settings = state->settings.restart;
    prepare_events(simulator, state);
    if (settings.returns != 0) {
        add_return(simulator, state, scanner, scanner->restart + 1, settings.delay_ms);
    }
    scanner->restarting = true;
    ++scanner->restart;
    end_capture(*scanner);
    simulator.changed.notify_all();
    if (settings.announce_unplug != 0) {
        announce(simulator, state, {driver_event_unplugged, scanner->handle});
    }
    if (settings.returns == 0) {
        detach(simulator, *state, scanner);
    }
}

std::optional<Hot_plug_event> come_back(Simulator& simulator, Scanner& scanner, std::uint64_t restart)
{
    if (!scanner.restarting || scanner.restart != restart) {
        return std::nullopt;
    }
    scanner.restarting = false;
    power_up(scanner);
    simulator.changed.notify_all();
    return Hot_plug_event{driver_event_plugged, scanner.handle};
}

void fill_entry(const Scanner& scanner, DriverDeviceEntry& entry)
{
    std::memset(static_cast<void*>(&entry), 0, sizeof entry);
    std::memcpy(entry.name, scanner.identity.name.data(), std::min(scanner.identity.name.size(), name_max));
    entry.driver_handle = scanner.handle;
    entry.info = scanner.identity.info;
}

}  // namespace brenvozulta_simulator
