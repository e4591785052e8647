// What is read from the scanner, from the library about its model, and loaded into it.
#include <windows.h>

#include <cstring>

#include "device/device.h"
#include "log/log.h"
#include "status/error_text.h"
#include "status/refusal.h"

namespace kvs::brenvozulta {

namespace {

// The library's own file, which holds the calibration image; under another name it does not find it.
constexpr char module_name[] = "vyrabrenvozulta.dll";
constexpr char image_type[] = "image_raw";
constexpr WORD image_identifier = 101;

std::int32_t resource_failure(const char* format, std::int32_t status)
{
    log_printf(log_errors, format, status, vyra_error_text(status));
    return status;
}

}  // namespace

std::int32_t brenvozulta_device::get_global_param_size(std::uint32_t* size)
{
    if (!is_open_for("get_global_param_size")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    return driver_status("QXDR_GetContainerSize", QXDR_GetContainerSize(device_data_->driver_handle, size));
}

std::int32_t brenvozulta_device::read_global_param(void* buffer, std::uint32_t size)
{
    if (!is_open_for("read_global_param")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    return driver_status("QXDR_ReadContainer", QXDR_ReadContainer(device_data_->driver_handle, buffer, size));
}

std::int32_t brenvozulta_device::get_snapshot_acquisition(void* buffer, std::uint32_t a, std::uint32_t b,
                                                          std::uint32_t c)
{
    if (!is_open_for("get_snapshot_acquisition")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    return driver_status("QXDR_GetSnapshotAcquisition",
                         QXDR_GetSnapshotAcquisition(device_data_->driver_handle, buffer, a, b, c));
}

std::int32_t brenvozulta_device::read_filters(const void* /*a*/, const void* /*b*/, const void* /*c*/)
{
    return is_open_for("read_filters") ? VYRA_OK : VYRA_SCN_UNAVAILABLE;
}

// The image is the model's, the same for every scanner, so the driver is not asked. A host that states another size
// gets nothing rather than a part.
std::int32_t brenvozulta_device::read_uniformity_buffers(void* buffer, std::int32_t size)
{
    if (!is_open_for("read_uniformity_buffers")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    if (buffer == nullptr) {
        return refuse("read_uniformity_buffers", VYRA_BAD_PARAMETER);
    }
    const HMODULE module = GetModuleHandleA(module_name);
    if (module == nullptr) {
        return refuse("read_uniformity_buffers", VYRA_INTERNAL);
    }
    const HRSRC image = FindResourceA(module, MAKEINTRESOURCEA(image_identifier), image_type);
    if (image == nullptr) {
        return resource_failure("read_uniformity_buffers:    Can't find the Image Uniformity resource Error=%d: %s\r\n",
                                VYRA_INTERNAL);
    }
    const HGLOBAL loaded = LoadResource(module, image);
    if (loaded == nullptr) {
        return resource_failure("read_uniformity_buffers:    Can't load the Image Uniformity resource Error=%d: %s\r\n",
                                VYRA_INTERNAL);
    }
    const void* const bytes = LockResource(loaded);
    const DWORD image_size = SizeofResource(module, image);
    if (image_size != static_cast<std::uint32_t>(size)) {
        return resource_failure("read_uniformity_buffers:   Invalid Image Uniformity resource size Error=%d: %s\r\n",
                                VYRA_BAD_PARAMETER);
    }
    std::memcpy(buffer, bytes, image_size);
    return VYRA_OK;
}

std::int32_t brenvozulta_device::update_firmware(const void* image, std::size_t length)
{
    if (!is_open_for("update_firmware")) {
        return VYRA_SCN_UNAVAILABLE;
    }
    std::uint32_t result = QXDR_UpdateFirmware(device_data_->driver_handle, image, length);
    if (result != driver_ok) {
        return driver_status("QXDR_UpdateFirmware", result);
    }
    // The new firmware starts with the scanner, which is not waited for.
    return driver_status("QXDR_ResetDevice", QXDR_ResetDevice(device_data_->driver_handle));
}

}  // namespace kvs::brenvozulta
