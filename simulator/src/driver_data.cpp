// The driver's functions for a scanner's identity, LEDs and data.
#include <algorithm>
#include <cstring>

#include "driver/driver.h"
#include "driver_call.h"

using namespace brenvozulta_simulator;

namespace {

constexpr std::size_t led_history_capacity = 65536;

// A still image of the asked size: the middle of what a capture would deliver.
std::uint32_t take_snapshot(Driver_call& call, const Scanner& scanner, std::uint8_t* buffer, std::uint32_t width,
                            std::uint32_t height, std::uint32_t config)
{
    const auto found = call.state()->settings.configs.find(
        static_cast<std::uint8_t>(config == 0 ? scanner.config : std::min<std::uint32_t>(config, 255)));
    if (found == call.state()->settings.configs.end()) {
        return driver_unknown_config;
    }
    if (width == 0 || height == 0 || width > found->second.width || height > found->second.height) {
        return driver_bad_size;
    }
    const auto source = call.state()->settings.images;
    const Image_request request{found->second.width, found->second.height, stable_hash(scanner.identity.name), 0};
    Image scratch{};
    const Unlocked unlocked(call.held());
    const Image& image = source->image(request, scratch);
    const std::uint32_t left = (std::max<std::uint32_t>(image.width, width) - width) / 2;
    const std::uint32_t top = (std::max<std::uint32_t>(image.height, height) - height) / 2;
    std::memset(buffer, 0, std::size_t{width} * height);
    for (std::uint32_t row = 0; row < std::min<std::uint32_t>(height, image.height); ++row) {
        const std::uint8_t* from = image.pixels.data() + std::size_t{row + top} * image.width + left;
        std::memcpy(buffer + std::size_t{row} * width, from, std::min<std::uint32_t>(width, image.width));
    }
    return driver_ok;
}

}  // namespace

std::uint32_t QXDR_GetDeviceInfo(void* driver_handle, DriverDeviceInfo* info)
{
    return run_scanner_call("QXDR_GetDeviceInfo", {address("driver_handle", driver_handle), address("info", info)},
                            driver_handle, [=](Driver_call&, const std::shared_ptr<Scanner>& scanner) -> std::uint32_t {
                                if (info == nullptr) {
                                    return driver_bad_parameter;
                                }
                                *info = scanner->identity.info;
                                return driver_ok;
                            });
}

std::uint32_t QXDR_GetDeviceInfoSN(const char* name, DriverDeviceInfo* info)
{
    return run_initialized_call("QXDR_GetDeviceInfoSN", {text("name", name), address("info", info)},
                                [=](Driver_call& call) -> std::uint32_t {
                                    if (name == nullptr || info == nullptr) {
                                        return driver_bad_parameter;
                                    }
                                    const auto scanner = find_present_scanner(*call.state(), name);
                                    if (scanner == nullptr) {
                                        return driver_no_scanner;
                                    }
                                    *info = scanner->identity.info;
                                    return driver_ok;
                                });
}

std::uint32_t QXDR_SetLeds(void* driver_handle, std::uint8_t area, std::uint16_t pattern, std::uint8_t on,
                           std::uint16_t fifth)
{
    return run_scanner_call("QXDR_SetLeds",
                            {address("driver_handle", driver_handle), number("area", area), number("pattern", pattern),
                             number("on", on), number("fifth", fifth)},
                            driver_handle, [=](Driver_call&, const std::shared_ptr<Scanner>& scanner) -> std::uint32_t {
                                if (area >= BRENVOZULTA_SIM_LED_AREAS) {
                                    return driver_bad_parameter;
                                }
                                scanner->leds[area] = {area, pattern, on, fifth};
                                scanner->led_history.push_back(scanner->leds[area]);
                                if (scanner->led_history.size() > led_history_capacity) {
                                    scanner->led_history.pop_front();
                                }
                                return driver_ok;
                            });
}

std::uint32_t QXDR_GetContainerSize(void* driver_handle, std::uint32_t* size)
{
    return run_scanner_call("QXDR_GetContainerSize", {address("driver_handle", driver_handle), address("size", size)},
                            driver_handle, [=](Driver_call&, const std::shared_ptr<Scanner>& scanner) -> std::uint32_t {
                                if (size == nullptr) {
                                    return driver_bad_parameter;
                                }
                                *size = static_cast<std::uint32_t>(scanner->identity.container->size());
                                return driver_ok;
                            });
}

// A smaller size reads the container's beginning.
std::uint32_t QXDR_ReadContainer(void* driver_handle, void* buffer, std::uint32_t size)
{
    return run_scanner_call("QXDR_ReadContainer",
                            {address("driver_handle", driver_handle), address("buffer", buffer), number("size", size)},
                            driver_handle, [=](Driver_call&, const std::shared_ptr<Scanner>& scanner) -> std::uint32_t {
                                if (buffer == nullptr) {
                                    return driver_bad_parameter;
                                }
                                if (size > scanner->identity.container->size()) {
                                    return driver_bad_size;
                                }
                                std::memcpy(buffer, scanner->identity.container->data(), size);
                                return driver_ok;
                            });
}

std::uint32_t QXDR_GetSnapshotAcquisition(void* driver_handle, void* buffer, std::uint32_t a, std::uint32_t b,
                                          std::uint32_t c)
{
    return run_scanner_call("QXDR_GetSnapshotAcquisition",
                            {address("driver_handle", driver_handle), address("buffer", buffer), number("a", a),
                             number("b", b), number("c", c)},
                            driver_handle,
                            [=](Driver_call& call, const std::shared_ptr<Scanner>& scanner) -> std::uint32_t {
                                if (buffer == nullptr) {
                                    return driver_bad_parameter;
                                }
                                const auto snapshot = scanner->identity.snapshot;
                                if (snapshot == nullptr) {
                                    return take_snapshot(call, *scanner, static_cast<std::uint8_t*>(buffer), a, b, c);
                                }
                                std::memcpy(buffer, snapshot->data(), snapshot->size());
                                return driver_ok;
                            });
}
