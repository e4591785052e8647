/* Lists the scanners, captures one flat image from the first and writes it as a PGM file, which most viewers show.
 *
 *     capture [FILE]
 */
#include <stdio.h>
#include <stdlib.h>
#include <windows.h>

#include <vyra/vyra.h>

static int failed(const char* what, int32_t status)
{
    fprintf(stderr, "%s failed: status %d\n", what, (int)status);
    return EXIT_FAILURE;
}

static int write_pgm(const char* path, const unsigned char* pixels)
{
    FILE* const file = fopen(path, "wb");
    int complete;

    if (file == NULL) {
        perror(path);
        return EXIT_FAILURE;
    }
    fprintf(file, "P5\n%u %u\n255\n", VYRA_FLAT_WIDTH, VYRA_FLAT_HEIGHT);
    complete = fwrite(pixels, 1, VYRA_FLAT_SIZE, file) == VYRA_FLAT_SIZE;
    complete = fclose(file) == 0 && complete;
    if (!complete) {
        fprintf(stderr, "%s could not be written\n", path);
        return EXIT_FAILURE;
    }
    printf("%s: %u x %u pixels\n", path, VYRA_FLAT_WIDTH, VYRA_FLAT_HEIGHT);
    return EXIT_SUCCESS;
}

/* Waits for the image that was asked for, at most five seconds. */
static int32_t wait_for_image(uint32_t handle)
{
    void* filled;
    int32_t status = VYRA_VIDEO_TIMEOUT;
    int tries;

    for (tries = 0; tries < 1000 && status == VYRA_VIDEO_TIMEOUT; ++tries) {
        Sleep(5); /* never ask in an empty loop: each question may be a line in the log */
        status = VyraGetVideoResult(handle, &filled, NULL);
    }
    return status;
}

static int capture(uint32_t handle, const char* path)
{
    unsigned char* const pixels = malloc(VYRA_FLAT_SIZE);
    int result;
    int32_t status = pixels == NULL ? VYRA_OUT_OF_RESOURCE : VyraBrenvoStartVideo(handle, VYRA_MODE_FLAT, 0);

    if (status == VYRA_OK) {
        status = VyraSubmitVideoRequest(handle, pixels, 0);
    }
    if (status == VYRA_OK) {
        status = wait_for_image(handle);
    }
    VyraStopVideo(handle);
    result = status == VYRA_OK ? write_pgm(path, pixels) : failed("capture", status);
    VyraCloseDevice_N(handle); /* only now is the buffer ours again, whatever the stop answered */
    free(pixels);
    return result;
}

int main(int argc, char** argv)
{
    DeviceListRecord list[VYRA_MAX_SCANNERS];
    uint32_t count = VYRA_MAX_SCANNERS;
    uint32_t handle;
    uint32_t i;
    int result;
    int32_t status = VyraInitialize_N(NULL, VYRA_LOG_OFF, 0);

    if (status == VYRA_OK) {
        status = VyraGetDeviceList_N(&count, list);
    }
    if (status != VYRA_OK) {
        VyraTerminate();
        return failed("listing the scanners (is one attached?)", status);
    }
    for (i = 0; i < count; ++i) {
        printf("%.255s\n", list[i].name);
    }
    status = VyraOpenDevice(list[0].name, &handle);
    result = status == VYRA_OK ? capture(handle, argc > 1 ? argv[1] : "image.pgm") : failed("opening", status);
    VyraTerminate();
    return result;
}
