// What a scanner device is made of, one record of each kind for each open.
#pragma once

#include <atomic>
#include <cstdint>
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

// The video state of a scanner.
//
//   IDLE --start--> RUNNING --stop, sleep--> STOP_REQUESTED --extraction thread--> STOPPED
//
// A start leads to RUNNING and a stop that the driver accepts leads to STOPPED from every state; sleep leads to
// STOP_REQUESTED from every state. Only RUNNING serves video requests.
enum Video_state : std::uint32_t {
    VIDEO_IDLE = 0,
    VIDEO_RUNNING = 1,
    VIDEO_STOP_REQUESTED = 2,
    VIDEO_STOPPED = 3,
};

// Read by the driver's acquisition thread and the extraction threads without a lock.
class Video_data {
public:
    std::atomic<std::uint32_t> video_state{VIDEO_IDLE};
    std::atomic<bool> dropped{false};  // the scanner's device is gone, with whatever state its video had
};

}  // namespace kvs::brenvozulta
