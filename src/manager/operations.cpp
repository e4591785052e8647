// The operations of one open device: one line each for what is particular to it.
#include "device/capture_config.h"
#include "manager/dispatch.h"

namespace kvs::brenvozulta {

std::int32_t brenvozulta_manager::get_device_capabilities(std::uint32_t handle, std::uint32_t index,
                                                          VyraDeviceCapabilities* record) noexcept
{
    return on_device("get_device_capabilities", handle, Missing_device::silent,
                     [&](auto& device) { return device.get_device_capabilities(index, record); });
}

std::int32_t brenvozulta_manager::get_device_info(std::uint32_t handle, DeviceInfo* record) noexcept
{
    return on_device("get_device_info", handle, Missing_device::silent,
                     [&](auto& device) { return device.get_device_info(record); });
}

std::int32_t brenvozulta_manager::get_device_ui(std::uint32_t handle, DevUI* record) noexcept
{
    return on_device("get_device_ui", handle, Missing_device::silent,
                     [&](auto& device) { return device.get_device_ui(record); });
}

std::int32_t brenvozulta_manager::get_global_param_size(std::uint32_t handle, std::uint32_t* size) noexcept
{
    return on_device("get_global_param_size", handle, Missing_device::logged,
                     [&](auto& device) { return device.get_global_param_size(size); });
}

// Its argument is looked at first, so that a null pointer has one answer whatever the state.
std::int32_t brenvozulta_manager::get_port_type(std::uint32_t handle, std::uint32_t* type) noexcept
{
    if (type == nullptr) {
        return refuse("get_port_type", VYRA_BAD_PARAMETER);
    }
    return on_device("get_port_type", handle, Missing_device::silent,
                     [&](auto& device) { return device.get_port_type(type); });
}

std::int32_t brenvozulta_manager::get_snapshot_acquisition(std::uint32_t handle, void* buffer, std::uint32_t a,
                                                           std::uint32_t b, std::uint32_t c) noexcept
{
    return on_device("get_snapshot_acquisition", handle, Missing_device::logged,
                     [&](auto& device) { return device.get_snapshot_acquisition(buffer, a, b, c); });
}

std::int32_t brenvozulta_manager::get_video_result(std::uint32_t handle, void** buffer, std::uint64_t* context) noexcept
{
    return on_device("get_video_result", handle, Missing_device::silent,
                     [&](auto& device) { return device.get_video_result(buffer, context); });
}

std::int32_t brenvozulta_manager::is_roll_supported(std::uint32_t handle, std::uint8_t* flag) noexcept
{
    return on_device("is_roll_supported", handle, Missing_device::logged,
                     [&](auto& device) { return device.is_roll_supported(flag); });
}

std::int32_t brenvozulta_manager::read_filters(std::uint32_t handle, const void* a, const void* b,
                                               const void* c) noexcept
{
    return on_device("read_filters", handle, Missing_device::logged,
                     [&](auto& device) { return device.read_filters(a, b, c); });
}

std::int32_t brenvozulta_manager::read_global_param(std::uint32_t handle, void* buffer, std::uint32_t size) noexcept
{
    return on_device("read_global_param", handle, Missing_device::logged,
                     [&](auto& device) { return device.read_global_param(buffer, size); });
}

std::int32_t brenvozulta_manager::read_uniformity_buffers(std::uint32_t handle, void* buffer,
                                                          std::int32_t size) noexcept
{
    return on_device("read_uniformity_buffers", handle, Missing_device::logged,
                     [&](auto& device) { return device.read_uniformity_buffers(buffer, size); });
}

std::int32_t brenvozulta_manager::set_buzzer(std::uint32_t handle, std::uint32_t pattern) noexcept
{
    return on_device("set_buzzer", handle, Missing_device::logged,
                     [&](auto& device) { return device.set_buzzer(pattern); });
}

std::int32_t brenvozulta_manager::set_cmd_parameter(std::uint32_t handle, std::uint8_t id, std::uint32_t value) noexcept
{
    return on_device("set_cmd_parameter", handle, Missing_device::logged,
                     [&](auto& device) { return device.set_cmd_parameter(id, value); });
}

std::int32_t brenvozulta_manager::set_device_ui(std::uint32_t handle, const DevUI* record) noexcept
{
    return on_device("set_device_ui", handle, Missing_device::silent,
                     [&](auto& device) { return device.set_device_ui(record); });
}

std::int32_t brenvozulta_manager::set_ui_cb(std::uint32_t handle, VyraUICallback callback, void* context) noexcept
{
    return on_device("set_ui_cb", handle, Missing_device::logged,
                     [&](auto& device) { return device.set_ui_cb(callback, context); });
}

// The manager's lines call it by the other start's name, the device's by its own.
std::int32_t brenvozulta_manager::start_camera(std::uint32_t handle) noexcept
{
    return on_device("start_video", handle, Missing_device::silent, [](auto& device) { return device.start_camera(); });
}

std::int32_t brenvozulta_manager::start_video(std::uint32_t handle, std::uint32_t mode) noexcept
{
    return on_device("start_video", handle, Missing_device::silent, [&](auto& device) -> std::int32_t {
        const std::uint8_t config = config_of_mode(mode);
        return config == 0 ? VYRA_BAD_PARAMETER : device.start_video(config);
    });
}

std::int32_t brenvozulta_manager::stop_video(std::uint32_t handle) noexcept
{
    return on_device("stop_video", handle, Missing_device::silent, [](auto& device) { return device.stop_video(); });
}

std::int32_t brenvozulta_manager::submit_video_request(std::uint32_t handle, void* buffer,
                                                       std::uint64_t context) noexcept
{
    return on_device("submit_video_request", handle, Missing_device::silent,
                     [&](auto& device) { return device.submit_video_request(buffer, context); });
}

// The image is looked at before the handle is, hence two frames, one inside the other.
std::int32_t brenvozulta_manager::update_firmware(std::uint32_t handle, const void* image, std::size_t length) noexcept
{
    return locked("update_firmware", [&]() REQUIRES(manager_lock_) -> std::int32_t {
        const std::int32_t refused = ready("update_firmware");
        if (refused != VYRA_OK) {
            return refused;
        }
        if (image == nullptr) {
            log_printf(log_errors, "update_firmware:   Error : %d %s \r\n", VYRA_BAD_PARAMETER,
                       vyra_error_text(VYRA_BAD_PARAMETER));
            return VYRA_BAD_PARAMETER;
        }
        return on_device("update_firmware", handle, Missing_device::logged,
                         [&](auto& device) { return device.update_firmware(image, length); });
    });
}

}  // namespace kvs::brenvozulta
