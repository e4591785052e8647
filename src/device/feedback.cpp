// The scanner's LEDs and the host's tones.
#include <windows.h>

#include <cstring>

#include "device/device.h"
#include "log/log.h"
#include "status/error_text.h"
#include "status/refusal.h"

namespace kvs::brenvozulta {

namespace {

struct Led_command {
    std::uint8_t area;
    std::uint16_t pattern;
};

constexpr std::uint8_t area_group_a = 0;
constexpr std::uint8_t area_group_b = 2;
constexpr std::uint8_t area_group_c = 1;
constexpr std::uint32_t group_ab_bits = 0x100;
constexpr std::uint32_t group_c_bits = 0x10;

// A position's two bits: its three lit states, or off.
std::uint32_t code(std::uint32_t position)
{
    return position <= 3 ? position : 0;
}

std::uint16_t pattern(std::uint32_t fixed_bits, std::uint32_t bits_0, std::uint32_t bits_2, std::uint32_t bits_4,
                      std::uint32_t bits_6)
{
    return static_cast<std::uint16_t>(fixed_bits | code(bits_0) | code(bits_2) << 2 | code(bits_4) << 4 |
                                      code(bits_6) << 6);
}

// Only one group is sent: A before B before C. Groups A and B run through their bits in opposite directions, as the
// LEDs are wired.
Led_command led_command(const DevUI& ui)
{
    const auto& a = ui.group_a;
    const auto& b = ui.group_b;
    if (ui.group_a_on != 0) {
        return {area_group_a, pattern(group_ab_bits, a[2], a[3], a[1], a[0])};
    }
    if (ui.group_b_on != 0) {
        return {area_group_b, pattern(group_ab_bits, b[1], b[0], b[2], b[3])};
    }
    if (ui.group_c_on != 0) {
        return {area_group_c, pattern(group_c_bits, ui.group_c[0], ui.group_c[1], 0, 0)};
    }
    log_printf(log_errors, "No area led to animate : turn off everything \n");
    return {area_group_a, 0};
}

}  // namespace

std::int32_t brenvozulta_device::set_device_ui(const DevUI* record)
{
    if (!is_open()) {
        log_printf(log_errors, "set_device_ui: VYRA_SCN_UNAVAILABLE   Error=%d: %s\r\n", VYRA_SCN_UNAVAILABLE,
                   vyra_error_text(VYRA_SCN_UNAVAILABLE));
        return VYRA_SCN_UNAVAILABLE;
    }
    // What is shown already is not sent again; nor is what the driver has refused, since it is kept as shown.
    if (std::memcmp(record, &device_data_->ui_state, sizeof(DevUI)) == 0) {
        return VYRA_OK;
    }
    device_data_->ui_state = *record;
    const Led_command command = led_command(device_data_->ui_state);
    const std::uint32_t result = QXDR_SetLeds(device_data_->driver_handle, command.area, command.pattern, 1, 0);
    if (result != driver_ok) {
        log_printf(log_errors, "--Error : QXDR_SetLeds ret = %d \n", result);
    }
    // Told of a refusal too, as of any change of the record.
    if (device_data_->ui_callback != nullptr) {
        device_data_->ui_callback(device_data_->ui_context);
    }
    return static_cast<std::int32_t>(result);
}

// This one and the next touch the record alone, so that the scanner need not be open for them.
std::int32_t brenvozulta_device::get_device_ui(DevUI* out) const
{
    if (out == nullptr) {
        return refuse("get_device_ui", VYRA_BAD_PARAMETER);
    }
    *out = device_data_->ui_state;
    return VYRA_OK;
}

std::int32_t brenvozulta_device::set_ui_cb(VyraUICallback callback, void* context)
{
    device_data_->ui_callback = callback;
    device_data_->ui_context = context;
    return VYRA_OK;
}

// The scanner has no buzzer: the tone is the computer's, and the scanner need not be open for it.
std::int32_t brenvozulta_device::set_buzzer(std::uint32_t pattern_number)
{
    switch (pattern_number) {
        case 0:
            Beep(1000, 200);
            Beep(1000, 300);
            return VYRA_OK;
        case 1:
            Beep(1000, 600);
            return VYRA_OK;
        case 2:
            Beep(1000, 300);
            return VYRA_OK;
        case 3:
            Beep(800, 600);
            return VYRA_OK;
        default:
            return refuse("set_buzzer", VYRA_BAD_PARAMETER);
    }
}

std::int32_t brenvozulta_device::set_cmd_parameter(std::uint8_t /*parameter*/, std::uint32_t /*value*/)
{
    return is_open_for("set_cmd_parameter") ? VYRA_OK : VYRA_SCN_UNAVAILABLE;
}

}  // namespace kvs::brenvozulta
