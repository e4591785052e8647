// Loading firmware into the scanner.
#include "device/device.h"

namespace kvs::brenvozulta {

std::int32_t brenvozulta_device::update_firmware(const void* image, std::size_t length)
{
    if (!is_open_for("update_firmware")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    std::uint32_t result = QXDR_UpdateFirmware(device_data_->driver_handle, image, length);
    if (result != 0) {
        return driver_status("QXDR_UpdateFirmware", result);
    }
    // The new firmware starts with the scanner, which is not waited for.
    return driver_status("QXDR_ResetDevice", QXDR_ResetDevice(device_data_->driver_handle));
}

}  // namespace kvs::brenvozulta
