/* Goes on after the cable was pulled: captures, notices that the scanner has gone, waits for it to come back, and
 * captures again, until so many images have come.
 *
 *     unplug [IMAGES]
 *
 * A pulled cable looks like "no image yet" for ever. The device-event callback tells; it runs on a thread of the
 * library's, so it only leaves a note.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

#include <vyra/vyra.h>

static char name[256]; /* of the scanner; set before the callback can see it */
static volatile LONG gone;

static int32_t on_device(int32_t event, const char* device, int32_t plugged)
{
    (void)event;
    if (!plugged && strcmp(device, name) == 0) {
        gone = 1;
    }
    return 0;
}

/* Opens the scanner as soon as it is there, starts video and asks for an image. */
static int32_t start(uint32_t* handle, void* buffer)
{
    int32_t status;

    while ((status = VyraOpenDevice(name, handle)) == VYRA_DEVICE_UNAVAIL) {
        Sleep(200); /* not attached yet */
    }
    gone = 0;
    if (status == VYRA_OK) {
        status = VyraBrenvoStartVideo(*handle, VYRA_MODE_FLAT, 0);
    }
    return status == VYRA_OK ? VyraSubmitVideoRequest(*handle, buffer, 0) : status;
}

/* Gives the scanner up. Stopping fails when it has gone; closing does not, and makes the buffer the host's again. */
static void give_up(uint32_t handle)
{
    VyraStopVideo(handle);
    VyraCloseDevice_N(handle);
}

static int32_t capture(void* buffer, unsigned wanted)
{
    unsigned images = 0;
    uint32_t handle;
    void* filled;
    int32_t status = start(&handle, buffer);

    while (status == VYRA_OK && images < wanted) {
        status = VyraGetVideoResult(handle, &filled, NULL);
        if (status == VYRA_OK) {
            printf("image %u\n", ++images);
            status = VyraSubmitVideoRequest(handle, buffer, 0);
        } else if (status == VYRA_VIDEO_TIMEOUT && gone) {
            puts("unplugged: waiting for it");
            give_up(handle);
            status = start(&handle, buffer);
            puts("there again");
        } else if (status == VYRA_VIDEO_TIMEOUT) {
            status = VYRA_OK; /* not yet */
            Sleep(5);
        }
        fflush(stdout);
    }
    give_up(handle);
    return status;
}

int main(int argc, char** argv)
{
    const unsigned wanted = argc > 1 ? (unsigned)atoi(argv[1]) : 100;
    void* const buffer = malloc(VYRA_FLAT_SIZE);
    DeviceListRecord list[VYRA_MAX_SCANNERS];
    uint32_t count = VYRA_MAX_SCANNERS;
    int32_t status = buffer == NULL ? VYRA_OUT_OF_RESOURCE : VyraInitialize_N(on_device, VYRA_LOG_OFF, 0);

    if (status == VYRA_OK) {
        status = VyraGetDeviceList_N(&count, list);
    }
    if (status == VYRA_OK) {
        memcpy(name, list[0].name, sizeof list[0].name);
        status = capture(buffer, wanted);
    }
    VyraTerminate();
    free(buffer);
    if (status != VYRA_OK) {
        fprintf(stderr, "failed: status %d\n", (int)status);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
