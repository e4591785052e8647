// The driver's functions around its own life and the list of scanners, opening and closing.

#include "driver/driver.h"
#include "driver_call.h"
#include "platform.h"
#include "scenario.h"

using namespace brenvozulta_simulator;

namespace {

constexpr const char* scenario_variable = "BRENVOZULTA_SCENARIO";

// Of the results that hosts take for a bad parameter, the one that no function gives for another reason.
constexpr std::uint32_t result_bad_scenario = driver_bad_parameter_14;

// The variable holds a file's name, or the scenario itself, which begins with a brace.
Scenario read_environment(const std::string& value)
{
    const std::size_t first = value.find_first_not_of(" \t\r\n");
    return first != std::string::npos && value[first] == '{' ? read_scenario(value, scenario_variable)
                                                             : read_scenario_file(value);
}

// The scenario of the environment, once: it stays until a reset.
std::uint32_t load_scenario_of_environment(Driver_call& call)
{
    State& state = *call.state();
    const std::string value = environment_text(scenario_variable);
    if (state.scenario_loaded || value.empty()) {
        return driver_ok;
    }
    try {
        install_scenario(call.simulator(), state, read_environment(value));
    } catch (const std::exception& error) {
        state.last_error = error.what();
        report(std::string("BrenvoZulta_USB: ") + error.what());
        return result_bad_scenario;
    }
    return driver_ok;
}

std::uint32_t list_devices(State& state, std::int32_t* count, DriverDeviceEntry* entries)
{
    std::int32_t filled = 0;
    for (const auto& scanner : state.bus) {
        if (scanner->present() && filled < driver_list_capacity) {
            fill_entry(*scanner, entries[filled++]);
        }
    }
    Settings& settings = state.settings;
    if (settings.list_count_times != 0) {
        settings.list_count_times -= settings.list_count_times > 0 ? 1 : 0;
        *count = settings.list_count;
        return driver_ok;
    }
    if (filled == 0) {
        return driver_no_scanner;
    }
    *count = filled;
    return driver_ok;
}

}  // namespace

std::uint32_t QXDR_Initialize()
{
    return run_driver_call("QXDR_Initialize", {}, [](Driver_call& call) -> std::uint32_t {
        State& state = *call.state();
        if (state.initialized && state.settings.reinitialize_result != driver_ok) {
            return state.settings.reinitialize_result;
        }
        const bool configured = state.scenario_loaded;
        const std::uint32_t loaded = load_scenario_of_environment(call);
        if (loaded == driver_ok && state.scenario_loaded != configured) {
            call.meet_faults();  // what the scenario says of this very call
        }
        if (loaded == driver_ok && call.carries_out()) {
            start_timeline(call.simulator(), call.state());
            state.initialized = true;
        }
        return loaded;
    });
}

std::uint32_t QXDR_Release()
{
    return run_initialized_call("QXDR_Release", {}, [](Driver_call& call) -> std::uint32_t {
        State& state = *call.state();
        stop_timeline(call.simulator(), state);
        state.initialized = false;
        for (const auto& scanner : state.scanners) {
            scanner->open = false;
            if (!scanner->attached) {
                forget_handle(state, *scanner);
            }
        }
        drop_events(state);
        wait_for_silence(call.held(), state, end_all_captures(state));
        return driver_ok;
    });
}

std::uint32_t QXDR_GetDevicesList(std::int32_t* count, DriverDeviceEntry* entries)
{
    return run_initialized_call("QXDR_GetDevicesList", {address("count", count), address("entries", entries)},
                                [=](Driver_call& call) -> std::uint32_t {
                                    return count == nullptr || entries == nullptr
                                               ? driver_bad_parameter
                                               : list_devices(*call.state(), count, entries);
                                });
}

std::uint32_t QXDR_SetListenerCallbackHotPlug(DriverHotPlugListener listener)
{
    return run_initialized_call("QXDR_SetListenerCallbackHotPlug",
                                {address("listener", reinterpret_cast<const void*>(listener))},
                                [=](Driver_call& call) -> std::uint32_t {
                                    call.state()->hot_plug.listener = listener;
                                    test_bench::hand_over(&call.state()->hot_plug);
                                    return driver_ok;
                                });
}

std::uint32_t QXDR_GetUsbInfo(void* driver_handle, DriverDeviceEntry* record)
{
    return run_initialized_call("QXDR_GetUsbInfo", {address("driver_handle", driver_handle), address("record", record)},
                                [=](Driver_call& call) -> std::uint32_t {
                                    std::shared_ptr<Scanner> scanner;
                                    if (record == nullptr) {
                                        return driver_bad_parameter;
                                    }
                                    const std::uint32_t found = find_by_handle(*call.state(), driver_handle, scanner);
                                    if (found == driver_ok) {
                                        fill_entry(*scanner, *record);
                                    }
                                    return found;
                                });
}

// Unless the settings refuse it, a scanner that is open already is handed out again: a host whose own opening failed
// halfway gets another chance.
std::uint32_t QXDR_OpenDevice(const char* name, void** driver_handle)
{
    return run_initialized_call("QXDR_OpenDevice", {text("name", name), address("driver_handle", driver_handle)},
                                [=](Driver_call& call) -> std::uint32_t {
                                    if (name == nullptr || driver_handle == nullptr) {
                                        return driver_bad_parameter;
                                    }
                                    const auto scanner = find_present_scanner(*call.state(), name);
                                    if (scanner == nullptr) {
                                        return driver_no_scanner;
                                    }
                                    const std::uint32_t again = call.state()->settings.reopen_result;
                                    if (scanner->open && again != driver_ok) {
                                        return again;
                                    }
                                    scanner->open = true;
                                    *driver_handle = scanner->handle;
                                    return driver_ok;
                                });
}

std::uint32_t QXDR_CloseDevice(void** driver_handle)
{
    void* const handle = driver_handle == nullptr ? nullptr : *driver_handle;
    return run_initialized_call("QXDR_CloseDevice",
                                {address("driver_handle", driver_handle), address("*driver_handle", handle)},
                                [=](Driver_call& call) -> std::uint32_t {
                                    std::shared_ptr<Scanner> scanner;
                                    const std::uint32_t found = find_by_handle(*call.state(), handle, scanner);
                                    if (found == driver_scanner_gone && !scanner->attached) {
                                        forget_handle(*call.state(), *scanner);
                                    }
                                    if (found != driver_ok) {
                                        return found;
                                    }
                                    if (!scanner->open) {
                                        return driver_wrong_state;
                                    }
                                    scanner->open = false;
                                    scanner->config = default_config;
                                    *driver_handle = nullptr;
                                    wait_for_end(call.held(), *call.state(), {end_capture(*scanner)});
                                    return driver_ok;
                                });
}

std::uint32_t QXDR_ResetDevice(void* driver_handle)
{
    return run_initialized_call(
        "QXDR_ResetDevice", {address("driver_handle", driver_handle)}, [=](Driver_call& call) -> std::uint32_t {
            std::shared_ptr<Scanner> scanner;
            const std::uint32_t found = find_by_handle(*call.state(), driver_handle, scanner);
            if (found == driver_scanner_gone && scanner->handle == driver_handle && scanner->restarting) {
                return driver_ok;  // it is doing just that
            }
            if (found != driver_ok) {
                return found;
            }
            if (!scanner->open) {
                return driver_wrong_state;
            }
            const bool after_update = std::exchange(scanner->firmware_unreset, false);
            if (after_update && call.state()->settings.firmware.reset_result != driver_ok) {
                return call.state()->settings.firmware.reset_result;
            }
            restart(call.simulator(), call.state(), scanner);
            return driver_ok;
        });
}
