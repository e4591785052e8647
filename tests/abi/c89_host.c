/* A host in C89: the header compiles, the records have their layout, the import library links. */
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "vyra/vyra.h"

static int failures = 0;

static void expect(int condition, const char* what)
{
    if (!condition) {
        printf("not so: %s\n", what);
        ++failures;
    }
}

static int32_t on_device(int32_t event, const char* name, int32_t plugged)
{
    (void)name;
    return event + plugged;
}

static void check_layout(void)
{
    expect(sizeof(DeviceListRecord) == 260, "a list record has 260 bytes");
    expect(sizeof(DeviceInfo) == 52, "the device information has 52 bytes");
    expect(sizeof(DeviceCapabilities) == 56, "the capabilities have 56 bytes");
    expect(sizeof(DevUI) == 52, "the LED record has 52 bytes");
    expect(offsetof(DeviceListRecord, name) == 4, "the name is at 4");
    expect(offsetof(DeviceInfo, version) == 40, "the version is at 40");
    expect(offsetof(DeviceCapabilities, image_height) == 24, "the image height is at 24");
    expect(offsetof(DevUI, group_c_on) == 48, "the last switch is at 48");
}

static void check_session(void)
{
    char names[VYRA_MAX_SCANNERS * VYRA_NAME_SLOT + 560];
    uint32_t count = VYRA_MAX_SCANNERS;
    uint32_t handle = 0;
    DeviceInfo info;

    expect(VyraInitialize_N(on_device, 0, 0) == VYRA_OK, "the library initializes");
    expect(VyraGetDeviceList(&count, names) == VYRA_OK && count == 1, "one scanner is attached");
    expect(VyraOpenDevice(names, &handle) == VYRA_OK && handle == 0, "it opens as handle 0");
    expect(VyraBrenvoGetDeviceInfo(handle, &info) == VYRA_OK, "it tells its identity");
    expect(strcmp(info.model, "RQ7-3050") == 0, "it is of the model");
    expect(VyraCloseDevice_N(handle) == VYRA_OK, "it closes");
    expect(VyraTerminate() == VYRA_OK, "the library terminates");
}

int main(void)
{
    uint32_t handle = 0;

    check_layout();
    expect(VyraInitialize() == VYRA_OK, "the older initialization succeeds");
    expect(VyraOpenDevice("scanner", &handle) == VYRA_NOT_INITIALIZED, "and initializes nothing");
    expect(handle == VYRA_NO_HANDLE, "a refused open leaves no handle");
    expect(VyraBrenvoGetFFDParameters() == VYRA_NOT_IMPLEMENTED, "a function without function says so");
    VyraBreakEnable();
    check_session();
    return failures == 0 ? 0 : 1;
}
