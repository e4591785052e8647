// The exported scanner functions that reach the manager, in the order of exports.list. Each holds the manager for the
// duration of the call and returns its status; no exception comes out of a manager operation.
#include "manager/get_manager.h"
#include "manager/manager.h"
#include "vyra/vyra.h"

using kvs::brenvozulta::get_manager;

extern "C" {

int32_t VyraBusReset_N(uint32_t handle)
{
    return get_manager()->reset_device(handle);
}

int32_t VyraCloseDevice_N(uint32_t handle)
{
    return get_manager()->close_device(handle);
}

// Slots of 255 bytes; the newer variant fills records, and cuts the names at their field.
int32_t VyraGetDeviceList(uint32_t* count, void* buffer)
{
    return get_manager()->get_device_list(count, static_cast<char*>(buffer));
}

int32_t VyraGetDeviceList_N(uint32_t* count, DeviceListRecord* buffer)
{
    return get_manager()->get_device_list_N(count, buffer);
}

int32_t VyraGetStatus(uint32_t handle)
{
    return get_manager()->get_status(handle);
}

// The next two differ from the functions of fixed result in that they create the manager.
int32_t VyraGetVerInfo(void* /*unused*/)
{
    get_manager();
    return VYRA_OK;
}

int32_t VyraGetVersion(void* /*unused_1*/, uint32_t /*unused_2*/)
{
    get_manager();
    return VYRA_OK;
}

int32_t VyraGetVideoResult(uint32_t handle, void** buffer, uint64_t* context)
{
    return get_manager()->get_video_result(handle, buffer, context);
}

int32_t VyraInitialize_N(VyraDeviceEventCallback callback, uint32_t log_level, int32_t log_limit)
{
    return get_manager()->initialize(callback, log_level, log_limit);
}

int32_t VyraBrenvoGetCapabilities(uint32_t handle, uint32_t index, VyraDeviceCapabilities* record)
{
    return get_manager()->get_device_capabilities(handle, index, record);
}

int32_t VyraBrenvoGetDevUI(uint32_t handle, DevUI* record)
{
    return get_manager()->get_device_ui(handle, record);
}

int32_t VyraBrenvoGetDeviceInfo(uint32_t handle, DeviceInfo* record)
{
    return get_manager()->get_device_info(handle, record);
}

// Needs no open scanner, and therefore goes by name.
int32_t VyraBrenvoMGGetDeviceInfo(const char* name, const void* /*unused*/, DeviceInfo* record)
{
    return get_manager()->get_device_info_dev_name(name, record);
}

int32_t VyraBrenvoSetBuzzer(uint32_t handle, uint32_t pattern, const void* /*unused_1*/, const void* /*unused_2*/)
{
    return get_manager()->set_buzzer(handle, pattern);
}

int32_t VyraBrenvoSetDevUI(uint32_t handle, const DevUI* record)
{
    return get_manager()->set_device_ui(handle, record);
}

int32_t VyraBrenvoSetUICallBack(uint32_t handle, VyraUICallback callback, void* context)
{
    return get_manager()->set_ui_cb(handle, callback, context);
}

int32_t VyraBrenvoStartVideo(uint32_t handle, uint32_t mode, uint32_t /*unused*/)
{
    return get_manager()->start_video(handle, mode);
}

int32_t VyraBrenvoZultaGetGlobalParamSize(uint32_t handle, uint32_t* size)
{
    return get_manager()->get_global_param_size(handle, size);
}

int32_t VyraBrenvoZultaGetPortType(uint32_t handle, uint32_t* port_type)
{
    return get_manager()->get_port_type(handle, port_type);
}

int32_t VyraBrenvoZultaGetSnapshotAcquisition(uint32_t handle, void* buffer, uint32_t a, uint32_t b, uint32_t c)
{
    return get_manager()->get_snapshot_acquisition(handle, buffer, a, b, c);
}

int32_t VyraBrenvoZultaIsRollSupported(uint32_t handle, uint8_t* supported)
{
    return get_manager()->is_roll_supported(handle, supported);
}

// The option has no effect: the three ways of opening differ in their arguments alone.
int32_t VyraBrenvoZultaOpenDevice(const char* name, uint32_t* handle, uint8_t option)
{
    return get_manager()->open_device(name, handle, option);
}

int32_t VyraBrenvoZultaReadFilters(uint32_t handle, void* a, void* b, void* c)
{
    return get_manager()->read_filters(handle, a, b, c);
}

int32_t VyraBrenvoZultaReadGlobalParam(uint32_t handle, void* buffer, uint32_t size)
{
    return get_manager()->read_global_param(handle, buffer, size);
}

int32_t VyraBrenvoZultaReadUniformityBuffers(uint32_t handle, void* buffer, int32_t size)
{
    return get_manager()->read_uniformity_buffers(handle, buffer, size);
}

int32_t VyraBrenvoZultaSetParameters(uint32_t handle, uint8_t parameter, uint32_t value)
{
    return get_manager()->set_cmd_parameter(handle, parameter, value);
}

int32_t VyraBrenvoZultaStartCamera(uint32_t handle)
{
    return get_manager()->start_camera(handle);
}

int32_t VyraOpenDevice(const char* name, uint32_t* handle)
{
    return get_manager()->open_device(name, handle, 0);
}

int32_t VyraOpenDevice_N(const char* name, const void* /*unused*/, uint32_t* handle)
{
    return get_manager()->open_device(name, handle, 0);
}

// The interface's word for a firmware update.
int32_t VyraPutMemory(uint32_t handle, const void* image, size_t length)
{
    return get_manager()->update_firmware(handle, image, length);
}

int32_t VyraStopVideo(uint32_t handle)
{
    return get_manager()->stop_video(handle);
}

int32_t VyraSubmitVideoRequest(uint32_t handle, void* buffer, uint64_t context)
{
    return get_manager()->submit_video_request(handle, buffer, context);
}

int32_t VyraTerminate(void)
{
    return get_manager()->terminate();
}

}  // extern "C"
