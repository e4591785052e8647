// The driver library BrenvoZulta_USB as this library uses it: its twenty functions and the records they fill.
//
// Every function returns 0 on success and a driver result (1 to 19 as far as known) otherwise. Its driver_handle is
// opaque here. The driver calls the acquisition callback on its acquisition thread and the hot-plug listener on a
// thread of its own.
#pragma once

#include <cstddef>
#include <cstdint>

// What the driver tells about one scanner. Only the named fields are read here; the rest is the driver's own.
struct DriverDeviceInfo {
    std::uint32_t port_type;
    char serial_number[12];  // terminated only when shorter than 12 characters
    std::uint8_t driver_data_16[14];
    std::int8_t version_major;
    std::int8_t version_minor;
    char version_revision;
    std::uint8_t driver_data_33[7];
};

// One attached scanner, as the driver lists and announces it.
struct DriverDeviceEntry {
    char name[560];  // zero-terminated
    void* driver_handle;
    DriverDeviceInfo info;
};

static_assert(sizeof(DriverDeviceInfo) == 40);
static_assert(offsetof(DriverDeviceInfo, serial_number) == 4);
static_assert(offsetof(DriverDeviceInfo, version_major) == 30);
static_assert(offsetof(DriverDeviceInfo, version_minor) == 31);
static_assert(offsetof(DriverDeviceInfo, version_revision) == 32);
static_assert(sizeof(DriverDeviceEntry) == 608);
static_assert(offsetof(DriverDeviceEntry, driver_handle) == 560);
static_assert(offsetof(DriverDeviceEntry, info) == 568);

constexpr std::int32_t driver_list_capacity = 8;  // entries that QXDR_GetDevicesList may fill
constexpr std::int32_t driver_event_plugged = 1;
constexpr std::int32_t driver_event_unplugged = 2;

extern "C" {

using DriverHotPlugListener = void (*)(std::int32_t event, void* driver_handle);
using DriverAcquisitionCallback = std::int32_t (*)(const std::uint8_t* image, std::uint16_t width, std::uint16_t height,
                                                   void* context);

std::uint32_t QXDR_Initialize(void);
std::uint32_t QXDR_Release(void);
std::uint32_t QXDR_GetDevicesList(std::int32_t* count, DriverDeviceEntry* entries);
std::uint32_t QXDR_SetListenerCallbackHotPlug(DriverHotPlugListener listener);
std::uint32_t QXDR_GetUsbInfo(void* driver_handle, DriverDeviceEntry* record);

std::uint32_t QXDR_OpenDevice(const char* name, void** driver_handle);
std::uint32_t QXDR_CloseDevice(void** driver_handle);
std::uint32_t QXDR_ResetDevice(void* driver_handle);

// One callback and one context for the whole process: a later registration replaces the earlier one.
std::uint32_t QXDR_SetCallbackAcquisition(DriverAcquisitionCallback callback, void* context);
std::uint32_t QXDR_SelectCaptureConfig(void* driver_handle, std::uint8_t config);
std::uint32_t QXDR_GetCaptureConfig(void* driver_handle, std::uint8_t config, char* description, std::uint8_t* size);
std::uint32_t QXDR_StartCapture(void* driver_handle);
std::uint32_t QXDR_StopCapture(void* driver_handle);

std::uint32_t QXDR_GetDeviceInfo(void* driver_handle, DriverDeviceInfo* info);
std::uint32_t QXDR_GetDeviceInfoSN(const char* name, DriverDeviceInfo* info);
std::uint32_t QXDR_SetLeds(void* driver_handle, std::uint8_t area, std::uint16_t pattern, std::uint8_t on,
                           std::uint16_t fifth);
std::uint32_t QXDR_GetContainerSize(void* driver_handle, std::uint32_t* size);
std::uint32_t QXDR_ReadContainer(void* driver_handle, void* buffer, std::uint32_t size);
std::uint32_t QXDR_GetSnapshotAcquisition(void* driver_handle, void* buffer, std::uint32_t a, std::uint32_t b,
                                          std::uint32_t c);
std::uint32_t QXDR_UpdateFirmware(void* driver_handle, const void* image, std::size_t length);
}
