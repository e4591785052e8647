#include "device/identity.h"

#include <cstring>
#include <sstream>

#include "device/capture_config.h"
#include "device/device.h"
#include "log/log.h"
#include "status/error_text.h"

namespace kvs::brenvozulta {

namespace {

constexpr std::size_t serial_number_bound = 12;
constexpr std::size_t version_bound = 7;

constexpr std::uint32_t last_capture_index = 5;
constexpr VyraDeviceCapabilities roll_capabilities = {1, 1, 500, 1600, 1500, 800, 750, {}};
constexpr VyraDeviceCapabilities flat_capabilities = {1, 1, 500, 3200, 3000, 1600, 1500, {}};

// Copies at most bound characters of text into the zeroed field, which is longer.
template <std::size_t Size>
void copy_bounded(char (&field)[Size], const char* text, std::size_t bound)
{
    std::memcpy(field, text, strnlen(text, bound));
}

// This one failure of the driver is not translated.
std::int32_t device_info_failure(std::uint32_t result)
{
    log_printf(log_errors, "--Error : QXDR_GetDeviceInfo ret = %d \n", result);
    return VYRA_INTERNAL;
}

}  // namespace

std::string format_version(std::int8_t major, std::int8_t minor, char revision)
{
    std::ostringstream text;
    text << int{major} << '.' << int{minor} << '.' << revision;
    return text.str();
}

void write_model(DeviceInfo& record)
{
    record = {};
    std::memcpy(record.manufacturer, "ORVANE", sizeof("ORVANE"));
    std::memcpy(record.model, "RQ7-3050", sizeof("RQ7-3050"));
}

void write_driver_info(DeviceInfo& record, const DriverDeviceInfo& info)
{
    copy_bounded(record.serial_number, info.serial_number, serial_number_bound);
    const std::string version = format_version(info.version_major, info.version_minor, info.version_revision);
    copy_bounded(record.version, version.c_str(), version_bound);
}

std::int32_t brenvozulta_device::get_device_info(DeviceInfo* out)
{
    if (!is_open_for("get_device_info")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    *out = {};  // a host that does not look at the status finds no other scanner's data
    DriverDeviceInfo info = {};
    const std::uint32_t result = QXDR_GetDeviceInfo(device_data_->driver_handle, &info);
    if (result != driver_ok) {
        return device_info_failure(result);
    }
    write_model(*out);
    write_driver_info(*out, info);
    return VYRA_OK;
}

std::int32_t brenvozulta_device::get_device_capabilities(std::uint32_t index, VyraDeviceCapabilities* out)
{
    if (!is_open_for("get_device_capabilities")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    if (index > last_capture_index) {
        log_printf(log_errors, "#DV# get_capabilities:\t Error:%d %s\r\n", VYRA_BAD_PARAMETER,
                   vyra_error_text(VYRA_BAD_PARAMETER));
        return VYRA_BAD_PARAMETER;
    }
    if (index == 0) {
        if (probe_roll_config(device_data_->driver_handle)) {
            *out = roll_capabilities;
        }
    } else if (index <= 2) {
        *out = flat_capabilities;
    }
    return VYRA_OK;  // the other indexes are valid and have no data: the record stays as it is
}

std::int32_t brenvozulta_device::get_port_type(std::uint32_t* out)
{
    if (!is_open_for("get_port_type")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    DriverDeviceInfo info = {};
    const std::uint32_t result = QXDR_GetDeviceInfo(device_data_->driver_handle, &info);
    if (result != driver_ok) {
        return device_info_failure(result);
    }
    *out = info.port_type;
    return VYRA_OK;
}

std::int32_t brenvozulta_device::is_roll_supported(std::uint8_t* out)
{
    if (!is_open_for("is_roll_supported")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    // A driver that cannot describe the configuration has no roll: not an error.
    *out = 0;
    if (probe_roll_config(device_data_->driver_handle)) {
        *out = 1;
    }
    return VYRA_OK;
}

}  // namespace kvs::brenvozulta
