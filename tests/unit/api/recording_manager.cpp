#include "unit/api/recording_manager.h"

#include <boost/smart_ptr/make_shared.hpp>

#include "manager/get_manager.h"
#include "manager/manager.h"

namespace recording_manager {

namespace {

boost::shared_ptr<kvs::brenvozulta::brenvozulta_manager>& holder()
{
    static auto& only = *new auto(boost::make_shared<kvs::brenvozulta::brenvozulta_manager>());
    return only;
}

template <class... Values>
std::int32_t take_down(const char* operation, Values... values)
{
    state().calls.push_back({operation, {argument(values)...}});
    state().owners_during_call = owners();
    return state().answer;
}

}  // namespace

State& state()
{
    static State only;
    return only;
}

void reset()
{
    state() = {};
}

long owners()
{
    return holder().use_count();
}

}  // namespace recording_manager

namespace kvs::brenvozulta {

using recording_manager::take_down;

// Never set: every get_manager comes here.
std::atomic<const manager_owner*> global_owner{nullptr};

const manager_owner& create_manager_once()
{
    ++recording_manager::state().managers_obtained;
    return recording_manager::holder();
}

brenvozulta_manager::brenvozulta_manager()
    : device_event_callback_(nullptr), initialized_(false), suspended_(false), device_detected_(false)
{
}

std::int32_t brenvozulta_manager::initialize(VyraDeviceEventCallback callback, std::uint32_t level,
                                             std::int32_t limit) noexcept
{
    return take_down("initialize", callback, level, limit);
}

std::int32_t brenvozulta_manager::terminate() noexcept
{
    return take_down("terminate");
}

std::int32_t brenvozulta_manager::get_device_list(std::uint32_t* count, char* buffer) noexcept
{
    return take_down("get_device_list", count, buffer);
}

std::int32_t brenvozulta_manager::get_device_list_N(std::uint32_t* count, DeviceListRecord* buffer) noexcept
{
    return take_down("get_device_list_N", count, buffer);
}

std::int32_t brenvozulta_manager::get_device_info_dev_name(const char* name, DeviceInfo* record) noexcept
{
    return take_down("get_device_info_dev_name", name, record);
}

std::int32_t brenvozulta_manager::open_device(const char* name, std::uint32_t* handle, std::uint8_t option) noexcept
{
    return take_down("open_device", name, handle, option);
}

std::int32_t brenvozulta_manager::close_device(std::uint32_t handle) noexcept
{
    return take_down("close_device", handle);
}

std::int32_t brenvozulta_manager::reset_device(std::uint32_t handle) noexcept
{
    return take_down("reset_device", handle);
}

std::int32_t brenvozulta_manager::get_status(std::uint32_t handle) noexcept
{
    return take_down("get_status", handle);
}

std::int32_t brenvozulta_manager::get_device_capabilities(std::uint32_t handle, std::uint32_t index,
                                                          VyraDeviceCapabilities* record) noexcept
{
    return take_down("get_device_capabilities", handle, index, record);
}

std::int32_t brenvozulta_manager::get_device_info(std::uint32_t handle, DeviceInfo* record) noexcept
{
    return take_down("get_device_info", handle, record);
}

std::int32_t brenvozulta_manager::get_device_ui(std::uint32_t handle, DevUI* record) noexcept
{
    return take_down("get_device_ui", handle, record);
}

std::int32_t brenvozulta_manager::get_global_param_size(std::uint32_t handle, std::uint32_t* size) noexcept
{
    return take_down("get_global_param_size", handle, size);
}

std::int32_t brenvozulta_manager::get_port_type(std::uint32_t handle, std::uint32_t* type) noexcept
{
    return take_down("get_port_type", handle, type);
}

std::int32_t brenvozulta_manager::get_snapshot_acquisition(std::uint32_t handle, void* buffer, std::uint32_t a,
                                                           std::uint32_t b, std::uint32_t c) noexcept
{
    return take_down("get_snapshot_acquisition", handle, buffer, a, b, c);
}

std::int32_t brenvozulta_manager::get_video_result(std::uint32_t handle, void** buffer, std::uint64_t* context) noexcept
{
    return take_down("get_video_result", handle, buffer, context);
}

std::int32_t brenvozulta_manager::is_roll_supported(std::uint32_t handle, std::uint8_t* flag) noexcept
{
    return take_down("is_roll_supported", handle, flag);
}

std::int32_t brenvozulta_manager::read_filters(std::uint32_t handle, const void* a, const void* b,
                                               const void* c) noexcept
{
    return take_down("read_filters", handle, a, b, c);
}

std::int32_t brenvozulta_manager::read_global_param(std::uint32_t handle, void* buffer, std::uint32_t size) noexcept
{
    return take_down("read_global_param", handle, buffer, size);
}

std::int32_t brenvozulta_manager::read_uniformity_buffers(std::uint32_t handle, void* buffer,
                                                          std::int32_t size) noexcept
{
    return take_down("read_uniformity_buffers", handle, buffer, size);
}

std::int32_t brenvozulta_manager::set_buzzer(std::uint32_t handle, std::uint32_t pattern) noexcept
{
    return take_down("set_buzzer", handle, pattern);
}

std::int32_t brenvozulta_manager::set_cmd_parameter(std::uint32_t handle, std::uint8_t id, std::uint32_t value) noexcept
{
    return take_down("set_cmd_parameter", handle, id, value);
}

std::int32_t brenvozulta_manager::set_device_ui(std::uint32_t handle, const DevUI* record) noexcept
{
    return take_down("set_device_ui", handle, record);
}

std::int32_t brenvozulta_manager::set_ui_cb(std::uint32_t handle, VyraUICallback callback, void* context) noexcept
{
    return take_down("set_ui_cb", handle, callback, context);
}

std::int32_t brenvozulta_manager::start_camera(std::uint32_t handle) noexcept
{
    return take_down("start_camera", handle);
}

std::int32_t brenvozulta_manager::start_video(std::uint32_t handle, std::uint32_t mode) noexcept
{
    return take_down("start_video", handle, mode);
}

std::int32_t brenvozulta_manager::stop_video(std::uint32_t handle) noexcept
{
    return take_down("stop_video", handle);
}

std::int32_t brenvozulta_manager::submit_video_request(std::uint32_t handle, void* buffer,
                                                       std::uint64_t context) noexcept
{
    return take_down("submit_video_request", handle, buffer, context);
}

std::int32_t brenvozulta_manager::update_firmware(std::uint32_t handle, const void* image, std::size_t length) noexcept
{
    return take_down("update_firmware", handle, image, length);
}

}  // namespace kvs::brenvozulta
