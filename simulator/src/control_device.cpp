// Control functions for what a scanner holds: capture configurations, LEDs, data, restart and firmware.
#include "control_call.h"

using namespace brenvozulta_simulator;

namespace {

std::shared_ptr<const std::vector<std::uint8_t>> bytes_of(const void* bytes, std::size_t length)
{
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    return std::make_shared<const std::vector<std::uint8_t>>(first, first + length);
}

}  // namespace

int brenvozulta_sim_set_capture_config(uint8_t number, const char* description, uint32_t width, uint32_t height)
{
    const bool sized = width > 0 && width <= UINT16_MAX && height > 0 && height <= UINT16_MAX &&
                       std::size_t{width} * height <= config_pixels_max;
    if (!sized || description == nullptr || std::strlen(description) > description_max) {
        return 0;
    }
    Control()->settings.configs[number] = {description, static_cast<std::uint16_t>(width),
                                           static_cast<std::uint16_t>(height)};
    return 1;
}

int brenvozulta_sim_set_config_description(uint8_t number, const void* bytes, size_t length)
{
    Control control;
    const auto config = control->settings.configs.find(number);
    if (config == control->settings.configs.end() || bytes == nullptr || length > description_max) {
        return 0;
    }
    config->second.description.assign(static_cast<const char*>(bytes), length);
    return 1;
}

int brenvozulta_sim_remove_capture_config(uint8_t number)
{
    return Control()->settings.configs.erase(number) > 0 ? 1 : 0;
}

int brenvozulta_sim_led_state(const char* scanner, uint8_t area, brenvozulta_sim_leds* leds)
{
    if (area >= BRENVOZULTA_SIM_LED_AREAS || leds == nullptr) {
        return 0;
    }
    return change_scanner(scanner, [=](const Scanner& found) { *leds = found.leds[area]; });
}

size_t brenvozulta_sim_led_history_count(const char* scanner)
{
    std::size_t count = 0;
    change_scanner(scanner, [&count](const Scanner& found) { count = found.led_history.size(); });
    return count;
}

int brenvozulta_sim_led_history(const char* scanner, size_t index, brenvozulta_sim_leds* leds)
{
    Control control;
    const auto found = find_scanner(*control, scanner);
    if (found == nullptr || leds == nullptr || index >= found->led_history.size()) {
        return 0;
    }
    *leds = found->led_history[index];
    return 1;
}

int brenvozulta_sim_set_container(const char* scanner, const void* bytes, size_t length)
{
    if (bytes == nullptr || length > UINT32_MAX) {
        return 0;
    }
    return change_scanner(scanner, [=](Scanner& found) { found.identity.container = bytes_of(bytes, length); });
}

int brenvozulta_sim_set_snapshot(const char* scanner, const void* bytes, size_t length)
{
    if (bytes == nullptr && length > 0) {
        return 0;
    }
    return change_scanner(
        scanner, [=](Scanner& found) { found.identity.snapshot = length > 0 ? bytes_of(bytes, length) : nullptr; });
}

int brenvozulta_sim_set_restart(const brenvozulta_sim_restart* restart)
{
    if (restart == nullptr) {
        return 0;
    }
    Control()->settings.restart = *restart;
    return 1;
}

int brenvozulta_sim_set_firmware(const brenvozulta_sim_firmware* firmware)
{
    if (firmware == nullptr) {
        return 0;
    }
    Control()->settings.firmware = *firmware;
    return 1;
}

uint64_t brenvozulta_sim_firmware_bytes(const char* scanner)
{
    std::uint64_t bytes = 0;
    change_scanner(scanner, [&bytes](const Scanner& found) { bytes = found.firmware_bytes; });
    return bytes;
}
