/* A host in C89 that loads the library: every call goes through the structure of functions. */
#include <stdio.h>
#include <string.h>

#include "vyra/loader.h"

static int failures = 0;

static void expect(int condition, const char* what)
{
    if (!condition) {
        printf("not so: %s\n", what);
        ++failures;
    }
}

static void on_usb(int vendor, int product, int event)
{
    (void)vendor;
    (void)product;
    (void)event;
}

static void on_power(int event)
{
    (void)event;
}

static void check_scanner(const VyraFunctions* vyra)
{
    char names[VYRA_MAX_SCANNERS * VYRA_NAME_SLOT + 560];
    uint32_t count = VYRA_MAX_SCANNERS;
    uint32_t handle = 0;
    DeviceInfo info;

    expect(vyra->VyraInitialize_N(NULL, 0, 0) == VYRA_OK, "the library initializes");
    expect(vyra->VyraGetDeviceList(&count, names) == VYRA_OK && count == 1, "one scanner is attached");
    expect(vyra->VyraOpenDevice(names, &handle) == VYRA_OK && handle == 0, "it opens as handle 0");
    expect(vyra->VyraBrenvoGetDeviceInfo(handle, &info) == VYRA_OK, "it tells its identity");
    expect(strcmp(info.model, "RQ7-3050") == 0, "it is of the model");
    expect(vyra->VyraCloseDevice_N(handle) == VYRA_OK, "it closes");
    expect(vyra->VyraTerminate() == VYRA_OK, "the library terminates");
}

static void check_notifications(const VyraFunctions* vyra)
{
    char window_class[] = "C89 LOADING HOST";

    expect(vyra->InitUsbNotifier(window_class) == 1, "the notifier starts");
    expect(vyra->SubscribeToUsbEvent(0x1234, 0x5678, on_usb) == 1, "a device is subscribed to");
    expect(vyra->SubscribeToUsbEvent(0x1234, 0x5678, on_usb) == 0, "but once");
    expect(vyra->UnSubscribeToUsbEvent(0x1234, 0x5678) == 1, "the subscription ends");
    expect(vyra->SubscribeToPowerEvent(on_power) == 1, "sleep and resume are subscribed to");
    expect(vyra->UnsubscribeToPowerEvent(on_power) == 1, "that subscription ends");
    expect(vyra->UnsubscribeToPowerEvent(on_power) == 0, "but once");
    expect(vyra->TerminateUsbNotifier(window_class) == 1, "the notifier stops");
}

int main(int count, char** values)
{
    VyraFunctions vyra;
    VyraLoadReport report;

    if (VyraLoad(count > 1 ? values[1] : NULL, &vyra, &report) != VYRA_LOADED) {
        printf("%s\n", report.message);
        return 1;
    }
    expect(report.message[0] == '\0', "a success has no message");
    expect(strstr(report.file, "vyrabrenvozulta") != NULL, "the loaded file is told");
    expect(vyra.VyraBrenvoGetFFDParameters() == VYRA_NOT_IMPLEMENTED, "a function without function says so");
    vyra.VyraBreakEnable();
    check_scanner(&vyra);
    check_notifications(&vyra);
    return failures == 0 ? 0 : 1;
}
