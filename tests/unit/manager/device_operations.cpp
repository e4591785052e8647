#include "device_operations.h"

namespace manager_tests {

namespace {

// What the operations read and write; the calls are made one at a time.
struct Arguments {
    VyraDeviceCapabilities capabilities = {};
    DeviceInfo info = {};
    DevUI shown = {};
    DevUI show = {{1, 0, 0, 0}, {}, {}, 1, 0, 0};
    std::uint32_t number = 0;
    std::uint8_t flag = 0;
    void* result = nullptr;
    std::uint64_t context = 0;
    unsigned char bytes[16] = "0123456789abcde";
};

Arguments& arguments()
{
    static Arguments the_arguments;
    return the_arguments;
}

constexpr bool logged = true;
constexpr bool silent = false;

std::vector<Device_operation> identity_operations()
{
    auto& with = arguments();
    return {
        {"VyraBrenvoGetCapabilities",
         "get_device_capabilities",
         silent,
         [&](auto handle) { return VyraBrenvoGetCapabilities(handle, 0, &with.capabilities); },
         VYRA_OK,
         {"QXDR_GetCaptureConfig"},
         {}},
        {"VyraBrenvoGetDeviceInfo",
         "get_device_info",
         silent,
         [&](auto handle) { return VyraBrenvoGetDeviceInfo(handle, &with.info); },
         VYRA_OK,
         {"QXDR_GetDeviceInfo"},
         {}},
        {"VyraBrenvoZultaGetPortType",
         "get_port_type",
         silent,
         [&](auto handle) { return VyraBrenvoZultaGetPortType(handle, &with.number); },
         VYRA_OK,
         {"QXDR_GetDeviceInfo"},
         {}},
        {"VyraBrenvoZultaIsRollSupported",
         "is_roll_supported",
         logged,
         [&](auto handle) { return VyraBrenvoZultaIsRollSupported(handle, &with.flag); },
         VYRA_OK,
         {"QXDR_GetCaptureConfig"},
         {}},
    };
}

std::vector<Device_operation> feedback_operations()
{
    auto& with = arguments();
    return {
        {"VyraBrenvoGetDevUI",
         "get_device_ui",
         silent,
         [&](auto handle) { return VyraBrenvoGetDevUI(handle, &with.shown); },
         VYRA_OK,
         {},
         {}},
        {"VyraBrenvoSetDevUI",
         "set_device_ui",
         silent,
         [&](auto handle) { return VyraBrenvoSetDevUI(handle, &with.show); },
         VYRA_OK,
         {"QXDR_SetLeds"},
         {}},
        {"VyraBrenvoSetUICallBack",
         "set_ui_cb",
         logged,
         [](auto handle) { return VyraBrenvoSetUICallBack(handle, nullptr, nullptr); },
         VYRA_OK,
         {},
         {}},
        // A pattern that makes no sound.
        {"VyraBrenvoSetBuzzer",
         "set_buzzer",
         logged,
         [](auto handle) { return VyraBrenvoSetBuzzer(handle, 99, nullptr, nullptr); },
         VYRA_BAD_PARAMETER,
         {},
         {error_line("set_buzzer", VYRA_BAD_PARAMETER)}},
        {"VyraBrenvoZultaSetParameters",
         "set_cmd_parameter",
         logged,
         [](auto handle) { return VyraBrenvoZultaSetParameters(handle, 1, 2); },
         VYRA_OK,
         {},
         {}},
    };
}

std::vector<Device_operation> data_operations()
{
    auto& with = arguments();
    return {
        {"VyraBrenvoZultaGetGlobalParamSize",
         "get_global_param_size",
         logged,
         [&](auto handle) { return VyraBrenvoZultaGetGlobalParamSize(handle, &with.number); },
         VYRA_OK,
         {"QXDR_GetContainerSize"},
         {}},
        {"VyraBrenvoZultaReadGlobalParam",
         "read_global_param",
         logged,
         [&](auto handle) { return VyraBrenvoZultaReadGlobalParam(handle, with.bytes, 5); },
         VYRA_OK,
         {"QXDR_ReadContainer"},
         {}},
        {"VyraBrenvoZultaGetSnapshotAcquisition",
         "get_snapshot_acquisition",
         logged,
         [&](auto handle) { return VyraBrenvoZultaGetSnapshotAcquisition(handle, with.bytes, 4, 3, 1); },
         VYRA_OK,
         {"QXDR_GetSnapshotAcquisition"},
         {}},
        {"VyraBrenvoZultaReadFilters",
         "read_filters",
         logged,
         [](auto handle) { return VyraBrenvoZultaReadFilters(handle, nullptr, nullptr, nullptr); },
         VYRA_OK,
         {},
         {}},
        {"VyraBrenvoZultaReadUniformityBuffers",
         "read_uniformity_buffers",
         logged,
         [](auto handle) { return VyraBrenvoZultaReadUniformityBuffers(handle, nullptr, 0); },
         VYRA_BAD_PARAMETER,
         {},
         {error_line("read_uniformity_buffers", VYRA_BAD_PARAMETER)}},
        {"VyraPutMemory",
         "update_firmware",
         logged,
         [&](auto handle) { return VyraPutMemory(handle, with.bytes, sizeof with.bytes); },
         VYRA_OK,
         {"QXDR_UpdateFirmware", "QXDR_ResetDevice"},
         {}},
    };
}

std::vector<Device_operation> video_operations()
{
    auto& with = arguments();
    const Calls start = {"QXDR_StopCapture", "QXDR_SelectCaptureConfig", "QXDR_StartCapture"};
    return {
        {"VyraBrenvoZultaStartCamera",
         "start_video",
         silent,
         [](auto handle) { return VyraBrenvoZultaStartCamera(handle); },
         VYRA_OK,
         start,
         {}},
        {"VyraBrenvoStartVideo",
         "start_video",
         silent,
         [](auto handle) { return VyraBrenvoStartVideo(handle, 0, 0); },
         VYRA_OK,
         start,
         {}},
        {"VyraStopVideo",
         "stop_video",
         silent,
         [](auto handle) { return VyraStopVideo(handle); },
         VYRA_OK,
         {"QXDR_StopCapture"},
         {}},
        {"VyraSubmitVideoRequest",
         "submit_video_request",
         silent,
         [&](auto handle) { return VyraSubmitVideoRequest(handle, with.bytes, 1); },
         VYRA_VIDEO_STOPPED,
         {},
         {error_line("submit_video_request", VYRA_VIDEO_STOPPED)}},
        {"VyraGetVideoResult",
         "get_video_result",
         silent,
         [&](auto handle) { return VyraGetVideoResult(handle, &with.result, &with.context); },
         VYRA_VIDEO_STOPPED,
         {},
         {error_line("get_video_result", VYRA_VIDEO_STOPPED)}},
    };
}

}  // namespace

const std::vector<Device_operation>& device_operations()
{
    static const std::vector<Device_operation> all = [] {
        std::vector<Device_operation> operations;
        for (const auto& group :
             {identity_operations(), feedback_operations(), data_operations(), video_operations()}) {
            operations.insert(operations.end(), group.begin(), group.end());
        }
        return operations;
    }();
    return all;
}

}  // namespace manager_tests
