#include "unit/api/export_calls.h"

#include <map>

#include "support/fixed_exports.h"

namespace export_calls {

namespace {

template <class Record>
Record* record(Arguments& arguments)
{
    return reinterpret_cast<Record*>(arguments.result.data());
}

std::int32_t call_break_enable(Arguments&)
{
    VyraBreakEnable();
    return VYRA_OK;
}

}  // namespace

const std::vector<Export>& fixed_exports()
{
    static const std::vector<Export> exports = {
        {"VyraBreakEnable", nullptr, call_break_enable},
#define EXPORT(function, result) {#function, nullptr, [](Arguments&) { return function(); }},
        FIXED_EXPORTS(EXPORT)
#undef EXPORT
            {"VyraGetVerInfo", nullptr, [](Arguments& with) { return VyraGetVerInfo(with.result.data()); }},
        {"VyraGetVersion", nullptr, [](Arguments& with) { return VyraGetVersion(with.result.data(), with.number); }},
    };
    return exports;
}

const std::vector<Export>& handle_exports()
{
    static const std::vector<Export> exports = {
        {"VyraBusReset_N", "reset_device", [](Arguments& with) { return VyraBusReset_N(with.handle); }},
        {"VyraCloseDevice_N", "close_device", [](Arguments& with) { return VyraCloseDevice_N(with.handle); }},
        {"VyraGetStatus", "get_status", [](Arguments& with) { return VyraGetStatus(with.handle); }},
        {"VyraGetVideoResult", "get_video_result",
         [](Arguments& with) { return VyraGetVideoResult(with.handle, record<void*>(with), nullptr); }},
        {"VyraBrenvoGetCapabilities", "get_device_capabilities",
         [](Arguments& with) {
             return VyraBrenvoGetCapabilities(with.handle, with.number, record<VyraDeviceCapabilities>(with));
         }},
        {"VyraBrenvoGetDevUI", "get_device_ui",
         [](Arguments& with) { return VyraBrenvoGetDevUI(with.handle, record<DevUI>(with)); }},
        {"VyraBrenvoGetDeviceInfo", "get_device_info",
         [](Arguments& with) { return VyraBrenvoGetDeviceInfo(with.handle, record<DeviceInfo>(with)); }},
        {"VyraBrenvoSetBuzzer", "set_buzzer",
         [](Arguments& with) { return VyraBrenvoSetBuzzer(with.handle, with.number, nullptr, nullptr); }},
        {"VyraBrenvoSetDevUI", "set_device_ui",
         [](Arguments& with) { return VyraBrenvoSetDevUI(with.handle, record<DevUI>(with)); }},
        {"VyraBrenvoSetUICallBack", "set_ui_cb",
         [](Arguments& with) { return VyraBrenvoSetUICallBack(with.handle, nullptr, nullptr); }},
        {"VyraBrenvoStartVideo", "start_video",
         [](Arguments& with) { return VyraBrenvoStartVideo(with.handle, with.number, with.number); }},
        {"VyraBrenvoZultaGetGlobalParamSize", "get_global_param_size",
         [](Arguments& with) { return VyraBrenvoZultaGetGlobalParamSize(with.handle, record<std::uint32_t>(with)); }},
        {"VyraBrenvoZultaGetPortType", "get_port_type",
         [](Arguments& with) { return VyraBrenvoZultaGetPortType(with.handle, record<std::uint32_t>(with)); }},
        {"VyraBrenvoZultaGetSnapshotAcquisition", "get_snapshot_acquisition",
         [](Arguments& with) {
             return VyraBrenvoZultaGetSnapshotAcquisition(with.handle, with.result.data(), 1, 2, 3);
         }},
        {"VyraBrenvoZultaIsRollSupported", "is_roll_supported",
         [](Arguments& with) { return VyraBrenvoZultaIsRollSupported(with.handle, record<std::uint8_t>(with)); }},
        {"VyraBrenvoZultaReadFilters", "read_filters",
         [](Arguments& with) { return VyraBrenvoZultaReadFilters(with.handle, with.result.data(), nullptr, nullptr); }},
        {"VyraBrenvoZultaReadGlobalParam", "read_global_param",
         [](Arguments& with) { return VyraBrenvoZultaReadGlobalParam(with.handle, with.result.data(), with.number); }},
        {"VyraBrenvoZultaReadUniformityBuffers", "read_uniformity_buffers",
         [](Arguments& with) {
             return VyraBrenvoZultaReadUniformityBuffers(with.handle, with.result.data(), VYRA_CALIBRATION_SIZE);
         }},
        {"VyraBrenvoZultaSetParameters", "set_cmd_parameter",
         [](Arguments& with) { return VyraBrenvoZultaSetParameters(with.handle, 1, with.number); }},
        {"VyraBrenvoZultaStartCamera", "start_video",
         [](Arguments& with) { return VyraBrenvoZultaStartCamera(with.handle); }},
        {"VyraPutMemory", "update_firmware",
         [](Arguments& with) { return VyraPutMemory(with.handle, with.result.data(), with.result.size()); }},
        {"VyraStopVideo", "stop_video", [](Arguments& with) { return VyraStopVideo(with.handle); }},
        {"VyraSubmitVideoRequest", "submit_video_request",
         [](Arguments& with) { return VyraSubmitVideoRequest(with.handle, with.result.data(), with.number); }},
    };
    return exports;
}

const std::vector<Export>& other_exports()
{
    static const std::vector<Export> exports = {
        {"VyraGetDeviceList", "get_device_list",
         [](Arguments& with) { return VyraGetDeviceList(&with.number, with.result.data()); }},
        {"VyraGetDeviceList_N", "get_device_list_N",
         [](Arguments& with) { return VyraGetDeviceList_N(&with.number, record<DeviceListRecord>(with)); }},
        {"VyraInitialize_N", "initialize", [](Arguments&) { return VyraInitialize_N(nullptr, 0, 0); }},
        {"VyraBrenvoMGGetDeviceInfo", "get_device_info",
         [](Arguments& with) {
             return VyraBrenvoMGGetDeviceInfo(with.name.c_str(), nullptr, record<DeviceInfo>(with));
         }},
        {"VyraBrenvoZultaOpenDevice", "open_device",
         [](Arguments& with) { return VyraBrenvoZultaOpenDevice(with.name.c_str(), &with.handle, 0); }},
        {"VyraOpenDevice", "open_device",
         [](Arguments& with) { return VyraOpenDevice(with.name.c_str(), &with.handle); }},
        {"VyraOpenDevice_N", "open_device",
         [](Arguments& with) { return VyraOpenDevice_N(with.name.c_str(), nullptr, &with.handle); }},
        {"VyraTerminate", "terminate", [](Arguments&) { return VyraTerminate(); }},
    };
    return exports;
}

std::int32_t fixed_result(const std::string& name)
{
#define EXPORT(function, result) {#function, result},
    static const std::map<std::string, std::int32_t> results = {FIXED_EXPORTS(EXPORT)};
#undef EXPORT
    const auto found = results.find(name);
    return found == results.end() ? VYRA_OK : found->second;
}

}  // namespace export_calls
