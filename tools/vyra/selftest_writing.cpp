// What changes something on the scanner: done only when it is allowed.
#include <cstring>

#include "selftest.h"

namespace vyra_tool {
namespace {

void note_call(void* context)
{
    *static_cast<int*>(context) += 1;
}

void shows_leds(Test_bench& bench)
{
    int calls = 0;
    expect_status("VyraBrenvoSetUICallBack", VyraBrenvoSetUICallBack(bench.handle, note_call, &calls), VYRA_OK);
    DevUI record{};
    record.group_a[0] = 1;
    record.group_a_on = 1;
    const int shown = VyraBrenvoSetDevUI(bench.handle, &record);
    DevUI read{};
    const int got = VyraBrenvoGetDevUI(bench.handle, &read);
    const DevUI off{};
    const int cleared = VyraBrenvoSetDevUI(bench.handle, &off);
    VyraBrenvoSetUICallBack(bench.handle, nullptr, nullptr);
    expect_status("VyraBrenvoSetDevUI", shown, VYRA_OK);
    expect_status("VyraBrenvoGetDevUI", got, VYRA_OK);
    expect(std::memcmp(&read, &record, sizeof read) == 0, "VyraBrenvoGetDevUI does not tell what is shown");
    expect_status("VyraBrenvoSetDevUI of nothing", cleared, VYRA_OK);
    expect(calls > 0, "the callback of VyraBrenvoSetUICallBack was not called");
}

void resets(Test_bench& bench)
{
    expect_status("VyraBusReset_N", VyraBusReset_N(bench.handle), VYRA_OK);
}

void answers_after_reset(Test_bench& bench)
{
    DeviceInfo info{};
    expect_status("VyraBrenvoGetDeviceInfo after a restart", VyraBrenvoGetDeviceInfo(bench.handle, &info), VYRA_OK);
    expect(std::strcmp(info.serial_number, bench.identity.serial_number) == 0,
           "another serial number answers to the handle after a restart");
}

}  // namespace

std::vector<Check> writing_checks()
{
    return {
        {"leds",
         "LEDs can be shown, read back and switched off, and the callback tells of it",
         "the operator gets no guidance",
         {"open"},
         shows_leds,
         true},
        {"reset",
         "VyraBusReset_N restarts the scanner within 2 seconds",
         "a host cannot help itself when the scanner hangs",
         {"open"},
         resets,
         true},
        {"reset-handle",
         "The handle stays valid after a restart",
         "a host must open the scanner anew after each restart",
         {"reset", "identity"},
         answers_after_reset,
         true},
    };
}

}  // namespace vyra_tool
