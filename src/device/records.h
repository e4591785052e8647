// What a scanner device keeps of one open, and the layouts of the records that it exchanges with the host.
#pragma once

#include <cstddef>
#include <string>

#include "vyra/vyra.h"

namespace kvs::brenvozulta {

static_assert(sizeof(DeviceInfo) == 52 && offsetof(DeviceInfo, model) == 8);
static_assert(offsetof(DeviceInfo, serial_number) == 24 && offsetof(DeviceInfo, version) == 40);
static_assert(sizeof(VyraDeviceCapabilities) == 56 && offsetof(VyraDeviceCapabilities, reserved) == 28);
static_assert(sizeof(DevUI) == 52 && offsetof(DevUI, group_b) == 16);
static_assert(offsetof(DevUI, group_c) == 32 && offsetof(DevUI, group_a_on) == 40);

// Who the scanner is to the driver, and what the operator sees on it.
class Device_data {
public:
    std::string name;
    DevUI ui_state = {};  // the last state shown
    VyraUICallback ui_callback = nullptr;
    void* ui_context = nullptr;
    void* driver_handle = nullptr;
};

}  // namespace kvs::brenvozulta
