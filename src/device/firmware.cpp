// Loading firmware into the scanner.
#include "device/device.h"

namespace kvs::brenvozulta {

std::int32_t brenvozulta_device::update_firmware(const void* image, std::size_t length)
{
    if (!is_open()) {
        return refuse("update_firmware", VYRA_SCN_UNAVAILABLE);
    }
    std::uint32_t result = QXDR_UpdateFirmware(device_data_->driver_handle, image, length);
    if (result != 0) {
        return driver_failure("QXDR_UpdateFirmware", result);
    }
    // The new firmware starts with the scanner, which is not waited for.
    result = QXDR_ResetDevice(device_data_->driver_handle);
    return result == 0 ? VYRA_OK : driver_failure("QXDR_ResetDevice", result);
}

}  // namespace kvs::brenvozulta
