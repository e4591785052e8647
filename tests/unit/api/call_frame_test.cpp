// The exports against a manager that only takes down what reaches it: which operation, with which arguments, and that
// its status comes back.
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/export_list.h"
#include "support/fixed_exports.h"
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

#define FORWARDING(function, ...) #function, [] { return function(__VA_ARGS__); }

const std::vector<Forwarding> forwarding_exports = {
    {FORWARDING(VyraBusReset_N, handle), reaches("reset_device", handle)},
    {FORWARDING(VyraCloseDevice_N, handle), reaches("close_device", handle)},
    {FORWARDING(VyraGetDeviceList, &number, bytes), reaches("get_device_list", &number, bytes)},
    {FORWARDING(VyraGetDeviceList_N, &number, &list_record), reaches("get_device_list_N", &number, &list_record)},
    {FORWARDING(VyraGetStatus, handle), reaches("get_status", handle)},
    {FORWARDING(VyraGetVideoResult, handle, &pointer, &context),
     reaches("get_video_result", handle, &pointer, &context)},
    {FORWARDING(VyraInitialize_N, on_event, 0x80000003U, -5), reaches("initialize", on_event, 0x80000003U, -5)},
    {FORWARDING(VyraBrenvoGetCapabilities, handle, 0xFFFFFFFEU, &capabilities),
     reaches("get_device_capabilities", handle, 0xFFFFFFFEU, &capabilities)},
    {FORWARDING(VyraBrenvoGetDevUI, handle, &ui), reaches("get_device_ui", handle, &ui)},
    {FORWARDING(VyraBrenvoGetDeviceInfo, handle, &device_info), reaches("get_device_info", handle, &device_info)},
    {FORWARDING(VyraBrenvoMGGetDeviceInfo, name, unused, &device_info),
     reaches("get_device_info_dev_name", name, &device_info)},
    {FORWARDING(VyraBrenvoSetBuzzer, handle, 0xFFFFFFFDU, unused, bytes), reaches("set_buzzer", handle, 0xFFFFFFFDU)},
    {FORWARDING(VyraBrenvoSetDevUI, handle, &ui), reaches("set_device_ui", handle, &ui)},
    {FORWARDING(VyraBrenvoSetUICallBack, handle, on_ui, bytes), reaches("set_ui_cb", handle, on_ui, bytes)},
    {FORWARDING(VyraBrenvoStartVideo, handle, 0xFFFFFFFCU, 17), reaches("start_video", handle, 0xFFFFFFFCU)},
    {FORWARDING(VyraBrenvoZultaGetGlobalParamSize, handle, &number), reaches("get_global_param_size", handle, &number)},
    {FORWARDING(VyraBrenvoZultaGetPortType, handle, &number), reaches("get_port_type", handle, &number)},
    {FORWARDING(VyraBrenvoZultaGetSnapshotAcquisition, handle, bytes, 0xF0000001U, 2, 3),
     reaches("get_snapshot_acquisition", handle, bytes, 0xF0000001U, 2U, 3U)},
    {FORWARDING(VyraBrenvoZultaIsRollSupported, handle, &flag), reaches("is_roll_supported", handle, &flag)},
    {FORWARDING(VyraBrenvoZultaOpenDevice, name, &number, 0xFE), reaches("open_device", name, &number, 0xFE)},
    {FORWARDING(VyraBrenvoZultaReadFilters, handle, bytes, bytes + 1, bytes + 2),
     reaches("read_filters", handle, bytes, bytes + 1, bytes + 2)},
    {FORWARDING(VyraBrenvoZultaReadGlobalParam, handle, bytes, 0xFFFFFFFBU),
     reaches("read_global_param", handle, bytes, 0xFFFFFFFBU)},
    {FORWARDING(VyraBrenvoZultaReadUniformityBuffers, handle, bytes, -7),
     reaches("read_uniformity_buffers", handle, bytes, -7)},
    {FORWARDING(VyraBrenvoZultaSetParameters, handle, 0xFD, 0xFFFFFFFAU),
     reaches("set_cmd_parameter", handle, 0xFD, 0xFFFFFFFAU)},
    {FORWARDING(VyraBrenvoZultaStartCamera, handle), reaches("start_camera", handle)},
    {FORWARDING(VyraOpenDevice, name, &number), reaches("open_device", name, &number, 0)},
    {FORWARDING(VyraOpenDevice_N, name, unused, &number), reaches("open_device", name, &number, 0)},
    {FORWARDING(VyraPutMemory, handle, bytes, std::size_t{0xFEDCBA9876543210}),
     reaches("update_firmware", handle, bytes, std::size_t{0xFEDCBA9876543210})},
    {FORWARDING(VyraStopVideo, handle), reaches("stop_video", handle)},
    {FORWARDING(VyraSubmitVideoRequest, handle, bytes, 0xFEDCBA9876543210U),
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

TEST(Fixed_exports_test, have_their_result_and_do_not_touch_the_manager)
{
    recording_manager::reset();
#define EXPORT(function, result) EXPECT_EQ(function(), result) << #function;
    FIXED_EXPORTS(EXPORT)
#undef EXPORT
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

// The exports above are all that there are, but for the notification service's.
TEST(Call_frame_test, every_export_is_tested)
{
    std::set<std::string> tested = {"VyraBreakEnable", "VyraGetVerInfo", "VyraGetVersion"};
#define EXPORT(function, result) tested.insert(#function);
    FIXED_EXPORTS(EXPORT)
#undef EXPORT
    for (const Forwarding& each : forwarding_exports) {
        tested.insert(each.title);
    }
    EXPECT_EQ(tested, test_support::scanner_exports());
}

}  // namespace
