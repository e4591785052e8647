// The driver's functions around captures.
#include <algorithm>
#include <cstring>

#include "driver/driver.h"
#include "driver_call.h"

using namespace brenvozulta_simulator;

std::uint32_t QXDR_SetCallbackAcquisition(DriverAcquisitionCallback callback, void* context)
{
    return run_initialized_call(
        "QXDR_SetCallbackAcquisition",
        {address("callback", reinterpret_cast<const void*>(callback)), address("context", context)},
        [=](Driver_call& call) -> std::uint32_t {
            call.state()->callback = callback;
            call.state()->context = context;
            test_bench::hand_over(&call.state()->callback);
            return driver_ok;
        });
}

std::uint32_t QXDR_SelectCaptureConfig(void* driver_handle, std::uint8_t config)
{
    return run_scanner_call("QXDR_SelectCaptureConfig",
                            {address("driver_handle", driver_handle), number("config", config)}, driver_handle,
                            [=](Driver_call& call, const std::shared_ptr<Scanner>& scanner) -> std::uint32_t {
                                if (call.state()->settings.configs.count(config) == 0) {
                                    return driver_config_refused;
                                }
                                if (scanner->capture != nullptr) {
                                    return driver_wrong_state;
                                }
                                scanner->config = config;
                                return driver_ok;
                            });
}

// size comes with the room at description and goes with the description's length.
std::uint32_t QXDR_GetCaptureConfig(void* driver_handle, std::uint8_t config, char* description, std::uint8_t* size)
{
    return run_scanner_call("QXDR_GetCaptureConfig",
                            {address("driver_handle", driver_handle), number("config", config),
                             address("description", description), address("size", size)},
                            driver_handle, [=](Driver_call& call, const std::shared_ptr<Scanner>&) -> std::uint32_t {
                                if (description == nullptr || size == nullptr) {
                                    return driver_bad_parameter;
                                }
                                const auto found = call.state()->settings.configs.find(config);
                                if (found == call.state()->settings.configs.end()) {
                                    return driver_unknown_config;
                                }
                                const std::string& text = found->second.description;
                                const std::size_t room = *size;
                                std::memcpy(description, text.data(), std::min(room, text.size()));
                                if (text.size() < room) {
                                    description[text.size()] = '\0';
                                }
                                *size = static_cast<std::uint8_t>(text.size());
                                return driver_ok;
                            });
}

std::uint32_t QXDR_StartCapture(void* driver_handle)
{
    return run_scanner_call("QXDR_StartCapture", {address("driver_handle", driver_handle)}, driver_handle,
                            [](Driver_call& call, const std::shared_ptr<Scanner>& scanner) -> std::uint32_t {
                                const auto config = call.state()->settings.configs.find(scanner->config);
                                if (config == call.state()->settings.configs.end()) {
                                    return driver_config_refused;
                                }
                                if (scanner->capture != nullptr) {
                                    return driver_wrong_state;
                                }
                                start_capture(call.simulator(), call.state(), *scanner, config->second);
                                return driver_ok;
                            });
}

std::uint32_t QXDR_StopCapture(void* driver_handle)
{
    return run_scanner_call("QXDR_StopCapture", {address("driver_handle", driver_handle)}, driver_handle,
                            [](Driver_call& call, const std::shared_ptr<Scanner>& scanner) -> std::uint32_t {
                                if (scanner->capture == nullptr) {
                                    return call.state()->settings.idle_stop_result;
                                }
                                wait_for_end(call.held(), *call.state(), {end_capture(*scanner)});
                                return driver_ok;
                            });
}
