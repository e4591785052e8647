/* Captures an image, and tells by its exit code how far it came: 0 when an image has arrived. */
#include <vyra/vyra.h>

__declspec(dllimport) void __stdcall ExitProcess(unsigned code);
__declspec(dllimport) void __stdcall Sleep(unsigned long milliseconds);

static unsigned char buffer[VYRA_FLAT_SIZE];
static DeviceListRecord list[VYRA_MAX_SCANNERS];

static unsigned run(void)
{
    uint32_t count = VYRA_MAX_SCANNERS;
    uint32_t handle;
    void* filled;
    int tries;
    int32_t status = VYRA_VIDEO_TIMEOUT;

    if (VyraInitialize_N(NULL, VYRA_LOG_OFF, 0) != VYRA_OK) {
        return 1;
    }
    if (VyraGetDeviceList_N(&count, list) != VYRA_OK || VyraOpenDevice(list[0].name, &handle) != VYRA_OK) {
        return 2;
    }
    if (VyraBrenvoStartVideo(handle, VYRA_MODE_FLAT, 0) != VYRA_OK ||
        VyraSubmitVideoRequest(handle, buffer, 0) != VYRA_OK) {
        return 3;
    }
    for (tries = 0; tries < 4000 && status == VYRA_VIDEO_TIMEOUT; ++tries) {
        Sleep(5);
        status = VyraGetVideoResult(handle, &filled, NULL);
    }
    if (status != VYRA_OK || filled != buffer) {
        return 4;
    }
    VyraStopVideo(handle);
    VyraCloseDevice_N(handle);
    return VyraTerminate() == VYRA_OK ? 0 : 5;
}

void mainCRTStartup(void)
{
    ExitProcess(run());
}
