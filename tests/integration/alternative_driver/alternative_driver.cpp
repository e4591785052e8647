// A driver library with one scanner, "another scanner", that shows a checkerboard for as long as it captures.
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

#include "driver/driver.h"

namespace {

constexpr char scanner_name[] = "another scanner";
constexpr std::uint16_t width = 1600;
constexpr std::uint16_t height = 1500;
constexpr std::uint32_t no_such_scanner = 5;
constexpr std::uint32_t nothing_captured = 4;

int scanner;  // its address is the driver handle

// Guards stop_requested and wakes the acquisition thread.
std::mutex lock;
std::condition_variable changed;
bool stop_requested = false;
std::thread acquisition;

DriverAcquisitionCallback callback = nullptr;
void* callback_context = nullptr;

DriverDeviceInfo information()
{
    DriverDeviceInfo info = {};
    info.port_type = 3;
    std::memcpy(info.serial_number, "ALT-0000001", 12);
    info.version_major = 7;
    info.version_minor = 8;
    info.version_revision = 'c';
    return info;
}

DriverDeviceEntry entry()
{
    DriverDeviceEntry result = {};
    std::strcpy(result.name, scanner_name);
    result.driver_handle = &scanner;
    result.info = information();
    return result;
}

void acquire()
{
    std::vector<std::uint8_t> image(std::size_t{width} * height);
    for (std::size_t i = 0; i < image.size(); ++i) {
        image[i] = ((i / width / 8) + (i % width / 8)) % 2 == 0 ? 0 : 255;
    }
    std::unique_lock<std::mutex> guard(lock);
    while (!stop_requested) {
        guard.unlock();
        callback(image.data(), width, height, callback_context);
        guard.lock();
        changed.wait_for(guard, std::chrono::milliseconds(10), [] { return stop_requested; });
    }
}

}  // namespace

#ifdef _WIN32
#define EXPORTED extern "C" __declspec(dllexport)
#else
#define EXPORTED extern "C"
#endif

EXPORTED std::uint32_t QXDR_Initialize(void)
{
    return 0;
}

EXPORTED std::uint32_t QXDR_Release(void)
{
    return 0;
}

EXPORTED std::uint32_t QXDR_GetDevicesList(std::int32_t* count, DriverDeviceEntry* entries)
{
    *count = 1;
    entries[0] = entry();
    return 0;
}

EXPORTED std::uint32_t QXDR_SetListenerCallbackHotPlug(DriverHotPlugListener)
{
    return 0;
}

EXPORTED std::uint32_t QXDR_GetUsbInfo(void*, DriverDeviceEntry* record)
{
    *record = entry();
    return 0;
}

EXPORTED std::uint32_t QXDR_OpenDevice(const char* name, void** driver_handle)
{
    *driver_handle = &scanner;
    return std::strcmp(name, scanner_name) == 0 ? 0 : no_such_scanner;
}

EXPORTED std::uint32_t QXDR_CloseDevice(void** driver_handle)
{
    *driver_handle = nullptr;
    return 0;
}

EXPORTED std::uint32_t QXDR_ResetDevice(void*)
{
    return 0;
}

EXPORTED std::uint32_t QXDR_SetCallbackAcquisition(DriverAcquisitionCallback new_callback, void* context)
{
    callback = new_callback;
    callback_context = context;
    return 0;
}

EXPORTED std::uint32_t QXDR_SelectCaptureConfig(void*, std::uint8_t config)
{
    return config == 1 ? 0 : 6;
}

EXPORTED std::uint32_t QXDR_GetCaptureConfig(void*, std::uint8_t config, char* description, std::uint8_t* size)
{
    if (config != 1) {
        return 12;
    }
    std::snprintf(description, *size, "flat %ux%u", unsigned{width}, unsigned{height});
    return 0;
}

EXPORTED std::uint32_t QXDR_StartCapture(void*)
{
    stop_requested = false;
    acquisition = std::thread(acquire);
    return 0;
}

EXPORTED std::uint32_t QXDR_StopCapture(void*)
{
    if (!acquisition.joinable()) {
        return nothing_captured;
    }
    {
        const std::lock_guard<std::mutex> guard(lock);
        stop_requested = true;
    }
    changed.notify_all();
    acquisition.join();
    return 0;
}

EXPORTED std::uint32_t QXDR_GetDeviceInfo(void*, DriverDeviceInfo* info)
{
    *info = information();
    return 0;
}

EXPORTED std::uint32_t QXDR_GetDeviceInfoSN(const char*, DriverDeviceInfo* info)
{
    *info = information();
    return 0;
}

EXPORTED std::uint32_t QXDR_SetLeds(void*, std::uint8_t, std::uint16_t, std::uint8_t, std::uint16_t)
{
    return 0;
}

EXPORTED std::uint32_t QXDR_GetContainerSize(void*, std::uint32_t* size)
{
    *size = 4321;
    return 0;
}

EXPORTED std::uint32_t QXDR_ReadContainer(void*, void* buffer, std::uint32_t size)
{
    std::memset(buffer, 0x42, size);
    return 0;
}

EXPORTED std::uint32_t QXDR_GetSnapshotAcquisition(void*, void*, std::uint32_t, std::uint32_t, std::uint32_t)
{
    return 0;
}

EXPORTED std::uint32_t QXDR_UpdateFirmware(void*, const void*, std::size_t)
{
    return 0;
}
