/* Captures rolled images with several requests outstanding, so that none is lost, until so many have come or Ctrl-C.
 *
 *     roll [IMAGES]
 *
 * What comes is a stream of single images; finding the finger and putting them together is the work of the host.
 */
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <windows.h>

#include <vyra/vyra.h>

#define BUFFERS 4

static volatile sig_atomic_t interrupted;

static void interrupt(int number)
{
    (void)number;
    interrupted = 1;
}

/* The darker an image, the more skin is on the glass. */
static double mean(const unsigned char* pixels)
{
    double sum = 0;
    unsigned i;

    for (i = 0; i < VYRA_ROLL_SIZE; ++i) {
        sum += pixels[i];
    }
    return sum / VYRA_ROLL_SIZE;
}

static int32_t roll(uint32_t handle, unsigned char* memory, unsigned wanted)
{
    void* filled;
    uint64_t number;
    unsigned images = 0;
    unsigned i;
    int32_t status = VyraBrenvoStartVideo(handle, VYRA_MODE_ROLL, 0);

    for (i = 0; i < BUFFERS && status == VYRA_OK; ++i) {
        status = VyraSubmitVideoRequest(handle, memory + i * VYRA_ROLL_SIZE, i);
    }
    while (status == VYRA_OK && images < wanted && !interrupted) {
        status = VyraGetVideoResult(handle, &filled, &number);
        if (status == VYRA_VIDEO_TIMEOUT) {
            status = VYRA_OK; /* not yet */
            Sleep(5);
        } else if (status == VYRA_OK) {
            printf("image %u in buffer %u: mean %.1f\n", ++images, (unsigned)number, mean(filled));
            status = VyraSubmitVideoRequest(handle, filled, number); /* at once, for the next image */
        }
    }
    return status;
}

int main(int argc, char** argv)
{
    const unsigned wanted = argc > 1 ? (unsigned)atoi(argv[1]) : 10;
    unsigned char* const memory = malloc((size_t)BUFFERS * VYRA_ROLL_SIZE);
    DeviceListRecord list[VYRA_MAX_SCANNERS];
    uint32_t count = VYRA_MAX_SCANNERS;
    uint32_t handle = VYRA_NO_HANDLE;
    uint8_t can_roll = 0;
    int32_t status = memory == NULL ? VYRA_OUT_OF_RESOURCE : VyraInitialize_N(NULL, VYRA_LOG_OFF, 0);

    signal(SIGINT, interrupt);
    if (status == VYRA_OK) {
        status = VyraGetDeviceList_N(&count, list);
    }
    if (status == VYRA_OK) {
        status = VyraOpenDevice(list[0].name, &handle);
    }
    if (status == VYRA_OK) {
        status = VyraBrenvoZultaIsRollSupported(handle, &can_roll);
    }
    if (status == VYRA_OK) {
        status = can_roll ? roll(handle, memory, wanted) : VYRA_CAPTURE_CONFIG;
    }
    /* The end is the same whatever happened: stop, close, terminate; then the buffers are the host's. */
    VyraStopVideo(handle);
    VyraCloseDevice_N(handle);
    VyraTerminate();
    free(memory);
    if (status != VYRA_OK) {
        fprintf(stderr, "failed: status %d\n", (int)status);
        return EXIT_FAILURE;
    }
    puts("ended");
    return EXIT_SUCCESS;
}
