// The driver library BrenvoZulta_USB as this library uses it: its results, the records they come with, its twenty
// functions and what each may count on.
#pragma once

#include <cstddef>
#include <cstdint>

// What every function returns. Nothing is known of a number that has no name here; the host gets it as an internal
// error.
enum DriverResult : std::uint32_t {
    driver_ok = 0,
    driver_bad_parameter = 1,
    driver_refused = 2,
    driver_not_initialized = 3,
    driver_scanner_gone = 4,
    driver_no_scanner = 5,  // also a list that is empty
    driver_config_refused = 6,
    driver_bad_parameter_7 = 7,  // like 14 and 15: what sets it apart from 1 is not known
    driver_bad_size = 8,
    driver_timeout = 9,
    driver_bad_handle = 10,
    driver_unknown_config = 12,
    driver_bad_parameter_14 = 14,
    driver_bad_parameter_15 = 15,
    driver_internal = 16,
    driver_scanner_busy = 18,
    driver_wrong_state = 19,
};

constexpr std::uint32_t driver_result_last = 19;  // of those known

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

// The events of the hot-plug listener. Others are ignored.
constexpr std::int32_t driver_event_plugged = 1;
constexpr std::int32_t driver_event_unplugged = 2;

extern "C" {

// Called on a driver thread of its own, with none of this library's locks. It takes the manager lock, for which it
// waits at most 5 seconds and then loses the event, and with it held calls QXDR_GetUsbInfo and the host. The driver may
// also call it from inside any of the functions below, on the caller's thread.
using DriverHotPlugListener = void (*)(std::int32_t event, void* driver_handle);

// Called on the driver's acquisition thread, with none of this library's locks. It never takes the manager lock and
// never calls the driver. It stays inside until the host submits a buffer, stops the video or gives the device up, and
// while it copies. image is the driver's and not touched after the return. Returns 0 for an image that was taken or
// that nobody waited for, else the video state that refused it.
using DriverAcquisitionCallback = std::int32_t (*)(const std::uint8_t* image, std::uint16_t width, std::uint16_t height,
                                                   void* context);

// Every function, unless it says otherwise:
// - It is called with the manager lock held, on the thread on which the host called an export. So no two run at a
//   time, except that a host which calls an export from one of its own callbacks nests them: the lock is recursive.
// - It may take as long as it likes. Whoever waits for the manager lock meanwhile gives up after 5 seconds, with 9000.
// - What it is given is lent for the call. Records are the caller's and zeroed; buffers and lengths of the host are
//   passed on as they come, null and wrong sizes included.
// - driver_handle is the driver's own, from its list, its events or QXDR_OpenDevice, and opaque here.

// By initialize and terminate. A release finds scanners open and capturing: terminate drops some without closing them,
// and their callbacks have been let go by then. After one that fails the driver counts as initialized, and the next
// terminate tries again. None comes at the process's end.
std::uint32_t QXDR_Initialize(void);
std::uint32_t QXDR_Release(void);

// By initialize, where count comes with the capacity, and by the device lists, where it comes with 0. It may stay as it
// came when the answer is driver_no_scanner.
std::uint32_t QXDR_GetDevicesList(std::int32_t* count, DriverDeviceEntry* entries);

// By each initialize. There is no way to take the listener back: the driver may call it until the process ends, and the
// module stays loaded for it.
std::uint32_t QXDR_SetListenerCallbackHotPlug(DriverHotPlugListener listener);

// By the listener, so on the driver's thread and inside its own call.
std::uint32_t QXDR_GetUsbInfo(void* driver_handle, DriverDeviceEntry* record);

// Both are given the address of the handle in the device, which they may write and must not keep. A close has the close
// mutex as well. It may wait for the acquisition callback, which has been let go before. The device is given up
// whatever the close returns.
std::uint32_t QXDR_OpenDevice(const char* name, void** driver_handle);
std::uint32_t QXDR_CloseDevice(void** driver_handle);

// Returns while the scanner restarts; the listener learns when it is back. A reset by the host waits 2 seconds for
// that, the one after a firmware update does not.
std::uint32_t QXDR_ResetDevice(void* driver_handle);

// By each open. One callback and one context for the whole process: a later registration replaces the earlier one, and
// the last one stays when its scanner is closed. The context is the device's address, looked up and never followed. An
// image may come before the function has returned.
std::uint32_t QXDR_SetCallbackAcquisition(DriverAcquisitionCallback callback, void* context);

// A start of video stops first, whether anything captures or not, then selects and starts. A stop may wait for the
// acquisition callback, and a parked one has been let go before: by the stop, the start or the sleep.
std::uint32_t QXDR_SelectCaptureConfig(void* driver_handle, std::uint8_t config);
std::uint32_t QXDR_StartCapture(void* driver_handle);
std::uint32_t QXDR_StopCapture(void* driver_handle);

// size comes with the room at description, 128 bytes. A description that fills it needs no terminator.
std::uint32_t QXDR_GetCaptureConfig(void* driver_handle, std::uint8_t config, char* description, std::uint8_t* size);

// The second works from a name alone, of a scanner that is not open.
std::uint32_t QXDR_GetDeviceInfo(void* driver_handle, DriverDeviceInfo* info);
std::uint32_t QXDR_GetDeviceInfoSN(const char* name, DriverDeviceInfo* info);

// All zero switches everything off, at each open. What fifth does is not known; it is always 0.
std::uint32_t QXDR_SetLeds(void* driver_handle, std::uint8_t area, std::uint16_t pattern, std::uint8_t on,
                           std::uint16_t fifth);

// size and buffer are the host's.
std::uint32_t QXDR_GetContainerSize(void* driver_handle, std::uint32_t* size);
std::uint32_t QXDR_ReadContainer(void* driver_handle, void* buffer, std::uint32_t size);
std::uint32_t QXDR_GetSnapshotAcquisition(void* driver_handle, void* buffer, std::uint32_t a, std::uint32_t b,
                                          std::uint32_t c);

// The image is the host's. The longest of the calls.
std::uint32_t QXDR_UpdateFirmware(void* driver_handle, const void* image, std::size_t length);
}
