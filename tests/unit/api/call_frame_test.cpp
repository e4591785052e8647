// The exports against a manager that only takes down what reaches it: which operation, with which arguments, and that
// its status comes back.
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "unit/api/recording_manager.h"
#include "vyra/vyra.h"

namespace {

using recording_manager::argument;
using recording_manager::Call;
using recording_manager::state;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t handle = 0x89ABCDEF;

char bytes[1024];
std::uint32_t number;
std::uint8_t flag;
void* pointer;
std::uint64_t context;
DeviceListRecord list_record;
DeviceInfo device_info;
VyraDeviceCapabilities capabilities;
DevUI ui;
char name[] = "scanner";
char unused[] = "unused";

std::int32_t on_event(std::int32_t, const char*, std::int32_t)
{
    return 0;
}

void on_ui(void*) {}

struct Forwarding {
    const char* title;
    std::function<std::int32_t()> call;
    Call expected;
};

void PrintTo(const Forwarding& forwarding, std::ostream* stream)
{
    *stream << forwarding.title;
}

template <class... Values>
Call reaches(const char* operation, Values... values)
{
    return {operation, {argument(values)...}};
}

#define EXPORT(function, ...) #function, [] { return function(__VA_ARGS__); }

const std::vector<Forwarding> forwarding_exports = {
    {EXPORT(VyraBusReset_N, handle), reaches("reset_device", handle)},
    {EXPORT(VyraCloseDevice_N, handle), reaches("close_device", handle)},
    {EXPORT(VyraGetDeviceList, &number, bytes), reaches("get_device_list", &number, bytes)},
    {EXPORT(VyraGetDeviceList_N, &number, &list_record), reaches("get_device_list_N", &number, &list_record)},
    {EXPORT(VyraGetStatus, handle), reaches("get_status", handle)},
    {EXPORT(VyraGetVideoResult, handle, &pointer, &context), reaches("get_video_result", handle, &pointer, &context)},
    {EXPORT(VyraInitialize_N, on_event, 0x80000003u, -5), reaches("initialize", on_event, 0x80000003u, -5)},
    {EXPORT(VyraBrenvoGetCapabilities, handle, 0xFFFFFFFEu, &capabilities),
     reaches("get_device_capabilities", handle, 0xFFFFFFFEu, &capabilities)},
    {EXPORT(VyraBrenvoGetDevUI, handle, &ui), reaches("get_device_ui", handle, &ui)},
    {EXPORT(VyraBrenvoGetDeviceInfo, handle, &device_info), reaches("get_device_info", handle, &device_info)},
    {EXPORT(VyraBrenvoMGGetDeviceInfo, name, unused, &device_info),
     reaches("get_device_info_dev_name", name, &device_info)},
    {EXPORT(VyraBrenvoSetBuzzer, handle, 0xFFFFFFFDu, unused, bytes), reaches("set_buzzer", handle, 0xFFFFFFFDu)},
    {EXPORT(VyraBrenvoSetDevUI, handle, &ui), reaches("set_device_ui", handle, &ui)},
    {EXPORT(VyraBrenvoSetUICallBack, handle, on_ui, bytes), reaches("set_ui_cb", handle, on_ui, bytes)},
    {EXPORT(VyraBrenvoStartVideo, handle, 0xFFFFFFFCu, 17), reaches("start_video", handle, 0xFFFFFFFCu)},
    {EXPORT(VyraBrenvoZultaGetGlobalParamSize, handle, &number), reaches("get_global_param_size", handle, &number)},
    {EXPORT(VyraBrenvoZultaGetPortType, handle, &number), reaches("get_port_type", handle, &number)},
    {EXPORT(VyraBrenvoZultaGetSnapshotAcquisition, handle, bytes, 0xF0000001u, 2, 3),
     reaches("get_snapshot_acquisition", handle, bytes, 0xF0000001u, 2u, 3u)},
    {EXPORT(VyraBrenvoZultaIsRollSupported, handle, &flag), reaches("is_roll_supported", handle, &flag)},
    {EXPORT(VyraBrenvoZultaOpenDevice, name, &number, 0xFE), reaches("open_device", name, &number, 0xFE)},
    {EXPORT(VyraBrenvoZultaReadFilters, handle, bytes, bytes + 1, bytes + 2),
     reaches("read_filters", handle, bytes, bytes + 1, bytes + 2)},
    {EXPORT(VyraBrenvoZultaReadGlobalParam, handle, bytes, 0xFFFFFFFBu),
     reaches("read_global_param", handle, bytes, 0xFFFFFFFBu)},
    {EXPORT(VyraBrenvoZultaReadUniformityBuffers, handle, bytes, -7),
     reaches("read_uniformity_buffers", handle, bytes, -7)},
    {EXPORT(VyraBrenvoZultaSetParameters, handle, 0xFD, 0xFFFFFFFAu),
     reaches("set_cmd_parameter", handle, 0xFD, 0xFFFFFFFAu)},
    {EXPORT(VyraBrenvoZultaStartCamera, handle), reaches("start_camera", handle)},
    {EXPORT(VyraOpenDevice, name, &number), reaches("open_device", name, &number, 0)},
    {EXPORT(VyraOpenDevice_N, name, unused, &number), reaches("open_device", name, &number, 0)},
    {EXPORT(VyraPutMemory, handle, bytes, std::size_t{0xFEDCBA9876543210}),
     reaches("update_firmware", handle, bytes, std::size_t{0xFEDCBA9876543210})},
    {EXPORT(VyraStopVideo, handle), reaches("stop_video", handle)},
    {EXPORT(VyraSubmitVideoRequest, handle, bytes, 0xFEDCBA9876543210u),
     reaches("submit_video_request", handle, bytes, std::uint64_t{0xFEDCBA9876543210})},
    {"VyraTerminate", [] { return VyraTerminate(); }, {"terminate", {}}},
};

class Forwarding_test : public ::testing::TestWithParam<Forwarding> {
protected:
    void SetUp() override { recording_manager::reset(); }
};

TEST_P(Forwarding_test, reaches_its_operation_once_with_its_arguments_in_order)
{
    GetParam().call();
    EXPECT_THAT(state().calls, ElementsAre(GetParam().expected));
}

TEST_P(Forwarding_test, status_comes_back_unchanged)
{
    for (const std::int32_t status : {0, 7, 9000, 9101, -1, 0x12345678, static_cast<std::int32_t>(0x80000000)}) {
        state().answer = status;
        EXPECT_EQ(GetParam().call(), status);
    }
}

TEST_P(Forwarding_test, holds_the_manager_during_the_call_and_no_longer)
{
    GetParam().call();
    EXPECT_EQ(state().managers_obtained, 1);
    EXPECT_EQ(state().owners_during_call, 2);
    EXPECT_EQ(recording_manager::owners(), 1);
}

INSTANTIATE_TEST_SUITE_P(Exports, Forwarding_test, ::testing::ValuesIn(forwarding_exports),
                         [](const auto& tested) { return std::string(tested.param.title); });

TEST(Fixed_exports_test, sixteen_return_zero_and_three_are_not_implemented_and_none_touches_the_manager)
{
    recording_manager::reset();
    using Fixed = std::int32_t (*)();
    const std::vector<Fixed> successful = {
        VyraBusReset,           VyraGetBufSize, VyraGetImage,   VyraGetMemory,   VyraGetVideoBandPosition,
        VyraInitialization,     VyraInitialize, VyraPutBitmap,  VyraPutCommand,  VyraBrenvoCalibrateScanner,
        VyraSetVideoBandParams, VyraPutImage,   VyraStartVideo, VyraSetTimeouts, VyraBrenvoDeviceConnected,
        VyraBrenvoGetFinalImage};
    EXPECT_EQ(successful.size(), 16u);
    for (const Fixed function : successful) {
        EXPECT_EQ(function(), 0);
    }
    for (const Fixed function :
         {VyraBrenvoGetDetectedFingersBox, VyraBrenvoGetFFDParameters, VyraBrenvoSetFFDParameters}) {
        EXPECT_EQ(function(), 9019);
    }
    VyraBreakEnable();
    EXPECT_EQ(state().managers_obtained, 0);
    EXPECT_THAT(state().calls, IsEmpty());
}

TEST(Version_exports_test, obtain_the_manager_and_return_zero_without_reading_their_arguments)
{
    recording_manager::reset();
    state().answer = 9101;
    EXPECT_EQ(VyraGetVerInfo(nullptr), 0);
    EXPECT_EQ(state().managers_obtained, 1);
    EXPECT_EQ(VyraGetVersion(nullptr, 0xFFFFFFFF), 0);
    EXPECT_EQ(state().managers_obtained, 2);
    EXPECT_THAT(state().calls, IsEmpty());
    EXPECT_EQ(recording_manager::owners(), 1);
}

}  // namespace
