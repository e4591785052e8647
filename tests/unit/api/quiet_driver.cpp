#include "unit/api/quiet_driver.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "driver/driver.h"

namespace quiet_driver {

namespace {

int scanners[2];  // their addresses are the driver handles
DriverHotPlugListener listener = nullptr;
DriverAcquisitionCallback callback = nullptr;
void* callback_context = nullptr;
bool capturing = false;
int opened = 0;

void describe(int number, DriverDeviceEntry* entry)
{
    std::memset(entry, 0, sizeof *entry);
    std::strcpy(entry->name, number == 0 ? first_scanner : second_scanner);
    entry->driver_handle = &scanners[number];
}

}  // namespace

void announce(std::int32_t event)
{
    listener(event, &scanners[1]);
}

bool is_capturing()
{
    return capturing;
}

int open_scanners()
{
    return opened;
}

std::int32_t deliver()
{
    static const std::uint8_t image[16] = {1, 2, 3};
    return callback(image, 4, 4, callback_context);
}

}  // namespace quiet_driver

using namespace quiet_driver;

std::uint32_t QXDR_Initialize(void)
{
    return 0;
}

std::uint32_t QXDR_Release(void)
{
    capturing = false;
    opened = 0;
    return 0;
}

std::uint32_t QXDR_GetDevicesList(std::int32_t* count, DriverDeviceEntry* entries)
{
    *count = 2;
    describe(0, &entries[0]);
    describe(1, &entries[1]);
    return 0;
}

std::uint32_t QXDR_SetListenerCallbackHotPlug(DriverHotPlugListener new_listener)
{
    listener = new_listener;
    return 0;
}

std::uint32_t QXDR_GetUsbInfo(void*, DriverDeviceEntry* record)
{
    describe(1, record);
    return 0;
}

std::uint32_t QXDR_OpenDevice(const char* name, void** driver_handle)
{
    *driver_handle = &scanners[std::strcmp(name, second_scanner) == 0];
    ++opened;
    return 0;
}

std::uint32_t QXDR_CloseDevice(void**)
{
    --opened;
    return 0;
}

std::uint32_t QXDR_ResetDevice(void*)
{
    announce(driver_event_plugged);
    return 0;
}

std::uint32_t QXDR_SetCallbackAcquisition(DriverAcquisitionCallback new_callback, void* context)
{
    callback = new_callback;
    callback_context = context;
    return 0;
}

std::uint32_t QXDR_SelectCaptureConfig(void*, std::uint8_t)
{
    return 0;
}

std::uint32_t QXDR_GetCaptureConfig(void*, std::uint8_t, char* description, std::uint8_t* size)
{
    std::snprintf(description, *size, "quiet 1608x1000");
    return 0;
}

std::uint32_t QXDR_StartCapture(void*)
{
    capturing = true;
    return 0;
}

// Refused while nothing is captured: a start of video then does not pause for the scanner's sake.
std::uint32_t QXDR_StopCapture(void*)
{
    return std::exchange(capturing, false) ? 0 : 4;
}

std::uint32_t QXDR_GetDeviceInfo(void*, DriverDeviceInfo* info)
{
    *info = {};
    return 0;
}

std::uint32_t QXDR_GetDeviceInfoSN(const char*, DriverDeviceInfo* info)
{
    *info = {};
    return 0;
}

std::uint32_t QXDR_SetLeds(void*, std::uint8_t, std::uint16_t, std::uint8_t, std::uint16_t)
{
    return 0;
}

std::uint32_t QXDR_GetContainerSize(void*, std::uint32_t* size)
{
    *size = 1;
    return 0;
}

std::uint32_t QXDR_ReadContainer(void*, void*, std::uint32_t)
{
    return 0;
}

std::uint32_t QXDR_GetSnapshotAcquisition(void*, void*, std::uint32_t, std::uint32_t, std::uint32_t)
{
    return 0;
}

std::uint32_t QXDR_UpdateFirmware(void*, const void*, std::size_t)
{
    return 0;
}
