/* A host that does not link the library but loads it, from the path given or from beside the program, and so can say
 * what is missing. Prints what is attached.
 *
 *     load [PATH OF vyrabrenvozulta.dll]
 */
#include <stdio.h>
#include <stdlib.h>

#include <vyra/loader.h>

int main(int argc, char** argv)
{
    VyraFunctions vyra;
    VyraLoadReport report;
    DeviceListRecord list[VYRA_MAX_SCANNERS];
    DeviceInfo info;
    uint32_t count = VYRA_MAX_SCANNERS;
    uint32_t i;
    int32_t status;

    if (VyraLoad(argc > 1 ? argv[1] : NULL, &vyra, &report) != VYRA_LOADED) {
        fprintf(stderr, "%s\n", report.message);
        return EXIT_FAILURE;
    }
    status = vyra.VyraInitialize_N(NULL, VYRA_LOG_OFF, 0);
    if (status == VYRA_OK) {
        status = vyra.VyraGetDeviceList_N(&count, list);
    }
    for (i = 0; status == VYRA_OK && i < count; ++i) {
        status = vyra.VyraBrenvoMGGetDeviceInfo(list[i].name, NULL, &info);
        printf("%.255s: %s %s, serial number %s\n", list[i].name, info.manufacturer, info.model, info.serial_number);
    }
    vyra.VyraTerminate();
    if (status != VYRA_OK) {
        fprintf(stderr, "failed: status %d\n", (int)status);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
