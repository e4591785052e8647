#include "unit/api/export_calls.h"

#include <algorithm>

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
        {"VyraBreakEnable", call_break_enable},
        {"VyraBusReset", [](Arguments&) { return VyraBusReset(); }},
        {"VyraGetBufSize", [](Arguments&) { return VyraGetBufSize(); }},
        {"VyraGetImage", [](Arguments&) { return VyraGetImage(); }},
        {"VyraGetMemory", [](Arguments&) { return VyraGetMemory(); }},
        {"VyraGetVideoBandPosition", [](Arguments&) { return VyraGetVideoBandPosition(); }},
        {"VyraInitialization", [](Arguments&) { return VyraInitialization(); }},
        {"VyraInitialize", [](Arguments&) { return VyraInitialize(); }},
        {"VyraBrenvoCalibrateScanner", [](Arguments&) { return VyraBrenvoCalibrateScanner(); }},
        {"VyraBrenvoDeviceConnected", [](Arguments&) { return VyraBrenvoDeviceConnected(); }},
        {"VyraBrenvoGetFinalImage", [](Arguments&) { return VyraBrenvoGetFinalImage(); }},
        {"VyraPutBitmap", [](Arguments&) { return VyraPutBitmap(); }},
        {"VyraPutCommand", [](Arguments&) { return VyraPutCommand(); }},
        {"VyraPutImage", [](Arguments&) { return VyraPutImage(); }},
        {"VyraSetTimeouts", [](Arguments&) { return VyraSetTimeouts(); }},
        {"VyraSetVideoBandParams", [](Arguments&) { return VyraSetVideoBandParams(); }},
        {"VyraStartVideo", [](Arguments&) { return VyraStartVideo(); }},
        {"VyraBrenvoGetDetectedFingersBox", [](Arguments&) { return VyraBrenvoGetDetectedFingersBox(); }},
        {"VyraBrenvoGetFFDParameters", [](Arguments&) { return VyraBrenvoGetFFDParameters(); }},
        {"VyraBrenvoSetFFDParameters", [](Arguments&) { return VyraBrenvoSetFFDParameters(); }},
        {"VyraGetVerInfo", [](Arguments& with) { return VyraGetVerInfo(with.result.data()); }},
        {"VyraGetVersion", [](Arguments& with) { return VyraGetVersion(with.result.data(), with.number); }},
    };
    return exports;
}

const std::vector<Export>& handle_exports()
{
    static const std::vector<Export> exports = {
        {"VyraBusReset_N", [](Arguments& with) { return VyraBusReset_N(with.handle); }},
        {"VyraCloseDevice_N", [](Arguments& with) { return VyraCloseDevice_N(with.handle); }},
        {"VyraGetStatus", [](Arguments& with) { return VyraGetStatus(with.handle); }},
        {"VyraGetVideoResult",
         [](Arguments& with) { return VyraGetVideoResult(with.handle, record<void*>(with), nullptr); }},
        {"VyraBrenvoGetCapabilities",
         [](Arguments& with) {
             return VyraBrenvoGetCapabilities(with.handle, with.number, record<VyraDeviceCapabilities>(with));
         }},
        {"VyraBrenvoGetDevUI", [](Arguments& with) { return VyraBrenvoGetDevUI(with.handle, record<DevUI>(with)); }},
        {"VyraBrenvoGetDeviceInfo",
         [](Arguments& with) { return VyraBrenvoGetDeviceInfo(with.handle, record<DeviceInfo>(with)); }},
        {"VyraBrenvoSetBuzzer",
         [](Arguments& with) { return VyraBrenvoSetBuzzer(with.handle, with.number, nullptr, nullptr); }},
        {"VyraBrenvoSetDevUI", [](Arguments& with) { return VyraBrenvoSetDevUI(with.handle, record<DevUI>(with)); }},
        {"VyraBrenvoSetUICallBack",
         [](Arguments& with) { return VyraBrenvoSetUICallBack(with.handle, nullptr, nullptr); }},
        {"VyraBrenvoStartVideo",
         [](Arguments& with) { return VyraBrenvoStartVideo(with.handle, with.number, with.number); }},
        {"VyraBrenvoZultaGetGlobalParamSize",
         [](Arguments& with) { return VyraBrenvoZultaGetGlobalParamSize(with.handle, record<std::uint32_t>(with)); }},
        {"VyraBrenvoZultaGetPortType",
         [](Arguments& with) { return VyraBrenvoZultaGetPortType(with.handle, record<std::uint32_t>(with)); }},
        {"VyraBrenvoZultaGetSnapshotAcquisition",
         [](Arguments& with) {
             return VyraBrenvoZultaGetSnapshotAcquisition(with.handle, with.result.data(), 1, 2, 3);
         }},
        {"VyraBrenvoZultaIsRollSupported",
         [](Arguments& with) { return VyraBrenvoZultaIsRollSupported(with.handle, record<std::uint8_t>(with)); }},
        {"VyraBrenvoZultaReadFilters",
         [](Arguments& with) { return VyraBrenvoZultaReadFilters(with.handle, with.result.data(), nullptr, nullptr); }},
        {"VyraBrenvoZultaReadGlobalParam",
         [](Arguments& with) { return VyraBrenvoZultaReadGlobalParam(with.handle, with.result.data(), with.number); }},
        {"VyraBrenvoZultaReadUniformityBuffers",
         [](Arguments& with) {
             return VyraBrenvoZultaReadUniformityBuffers(with.handle, with.result.data(), VYRA_CALIBRATION_SIZE);
         }},
        {"VyraBrenvoZultaSetParameters",
         [](Arguments& with) { return VyraBrenvoZultaSetParameters(with.handle, 1, with.number); }},
        {"VyraBrenvoZultaStartCamera", [](Arguments& with) { return VyraBrenvoZultaStartCamera(with.handle); }},
        {"VyraPutMemory",
         [](Arguments& with) { return VyraPutMemory(with.handle, with.result.data(), with.result.size()); }},
        {"VyraStopVideo", [](Arguments& with) { return VyraStopVideo(with.handle); }},
        {"VyraSubmitVideoRequest",
         [](Arguments& with) { return VyraSubmitVideoRequest(with.handle, with.result.data(), with.number); }},
    };
    return exports;
}

const std::vector<Export>& other_exports()
{
    static const std::vector<Export> exports = {
        {"VyraGetDeviceList", [](Arguments& with) { return VyraGetDeviceList(&with.number, with.result.data()); }},
        {"VyraGetDeviceList_N",
         [](Arguments& with) { return VyraGetDeviceList_N(&with.number, record<DeviceListRecord>(with)); }},
        {"VyraInitialize_N", [](Arguments&) { return VyraInitialize_N(nullptr, 0, 0); }},
        {"VyraBrenvoMGGetDeviceInfo",
         [](Arguments& with) {
             return VyraBrenvoMGGetDeviceInfo(with.name.c_str(), nullptr, record<DeviceInfo>(with));
         }},
        {"VyraBrenvoZultaOpenDevice",
         [](Arguments& with) { return VyraBrenvoZultaOpenDevice(with.name.c_str(), &with.handle, 0); }},
        {"VyraOpenDevice", [](Arguments& with) { return VyraOpenDevice(with.name.c_str(), &with.handle); }},
        {"VyraOpenDevice_N",
         [](Arguments& with) { return VyraOpenDevice_N(with.name.c_str(), nullptr, &with.handle); }},
        {"VyraTerminate", [](Arguments&) { return VyraTerminate(); }},
    };
    return exports;
}

std::int32_t fixed_result(const std::string& name)
{
    const std::array<std::string, 3> unimplemented = {"VyraBrenvoGetDetectedFingersBox", "VyraBrenvoGetFFDParameters",
                                                      "VyraBrenvoSetFFDParameters"};
    const bool implemented = std::find(unimplemented.begin(), unimplemented.end(), name) == unimplemented.end();
    return implemented ? VYRA_OK : VYRA_NOT_IMPLEMENTED;
}

}  // namespace export_calls
