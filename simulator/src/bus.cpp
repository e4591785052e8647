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
    simulator.last_handle += 0x10;
    scanner->handle = reinterpret_cast<void*>(simulator.last_handle);
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
    scanner->attached = false;
    scanner->restarting = false;
    scanner->open = false;
    end_capture(*scanner);
    state.bus.erase(std::remove(state.bus.begin(), state.bus.end(), scanner), state.bus.end());
    simulator.changed.notify_all();
}

bool plug(Simulator& simulator, const std::shared_ptr<State>& state, const std::string& name)
{
    const auto scanner = find_or_add_scanner(*state, name);
    if (scanner->attached) {
        return false;
    }
    attach(simulator, *state, scanner);
    send_event(simulator, state, {driver_event_plugged, scanner->handle});
    return true;
}

bool unplug(Simulator& simulator, const std::shared_ptr<State>& state, const std::string& name)
{
    const auto scanner = find_scanner(*state, name.c_str());
    if (scanner == nullptr || !scanner->attached) {
        return false;
    }
    const bool announced = scanner->restarting && state->settings.restart.announce_unplug != 0;
    detach(simulator, *state, scanner);
    if (!announced) {
        send_event(simulator, state, {driver_event_unplugged, scanner->handle});
    }
    return true;
}

void restart(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner)
{
    const brenvozulta_sim_restart& settings = state->settings.restart;
    scanner->restarting = true;
    ++scanner->restart;
    end_capture(*scanner);
    simulator.changed.notify_all();
    if (settings.announce_unplug != 0) {
        send_event(simulator, state, {driver_event_unplugged, scanner->handle});
    }
    if (settings.returns != 0) {
        add_return(simulator, state, scanner, settings.delay_ms);
    } else {
        detach(simulator, *state, scanner);
    }
}

void come_back(Simulator& simulator, const std::shared_ptr<State>& state, const std::shared_ptr<Scanner>& scanner,
               std::uint64_t restart)
{
    if (!scanner->restarting || scanner->restart != restart) {
        return;
    }
    scanner->restarting = false;
    power_up(*scanner);
    simulator.changed.notify_all();
    send_event(simulator, state, {driver_event_plugged, scanner->handle});
}

void fill_entry(const Scanner& scanner, DriverDeviceEntry& entry)
{
    std::memset(static_cast<void*>(&entry), 0, sizeof entry);
    std::memcpy(entry.name, scanner.identity.name.data(), std::min(scanner.identity.name.size(), name_max));
    entry.driver_handle = scanner.handle;
    entry.info = scanner.identity.info;
}

}  // namespace brenvozulta_simulator
