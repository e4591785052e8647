#include "host.h"

#include "vyra/vyra.h"
#include "win32.h"

bool report(bool good, const char* line)
{
    char text[256];
    const int size = wsprintfA(text, "%s%s\n", good ? "" : "WRONG: ", line);
    uint32_t written = 0;
    WriteFile(GetStdHandle(std_output), text, static_cast<uint32_t>(size), &written, nullptr);
    return good;
}

namespace {

char names[VYRA_MAX_SCANNERS * VYRA_NAME_SLOT + 305];  // the last name may be 559 characters long
DeviceInfo info;

bool check_calls_before_initialization()
{
    uint32_t count = VYRA_MAX_SCANNERS;
    const int32_t list = VyraGetDeviceList(&count, names);
    const int32_t version = VyraGetVerInfo(nullptr);
    const int32_t missing = VyraBrenvoGetFFDParameters();
    VyraBreakEnable();
    char line[128];
    wsprintfA(line, "before initialization: VyraGetDeviceList %d, VyraGetVerInfo %d, VyraBrenvoGetFFDParameters %d",
              list, version, missing);
    return report(list == VYRA_NOT_INITIALIZED && version == VYRA_OK && missing == VYRA_NOT_IMPLEMENTED, line);
}

bool check_session()
{
    uint32_t count = VYRA_MAX_SCANNERS;
    uint32_t handle = VYRA_NO_HANDLE;
    bool good = report(VyraInitialize_N(nullptr, 0, 0) == VYRA_OK, "initialized");
    good = report(VyraGetDeviceList(&count, names) == VYRA_OK && count == 1, "one scanner is attached") && good;
    good = report(VyraOpenDevice(names, &handle) == VYRA_OK && handle == 0, "opened as handle 0") && good;
    const int32_t status = VyraBrenvoGetDeviceInfo(handle, &info);
    char line[128];
    wsprintfA(line, "it is an %s %s", info.manufacturer, info.model);
    good = report(status == VYRA_OK && info.manufacturer[0] == 'O' && info.model[0] == 'R', line) && good;
    good = report(VyraCloseDevice_N(handle) == VYRA_OK, "closed") && good;
    good = report(VyraTerminate() == VYRA_OK, "terminated") && good;
    return good;
}

}  // namespace

bool check_scanner_calls()
{
    return check_calls_before_initialization() && check_session();
}

int run_host()
{
    const bool exports = check_exports();
    const bool calls = check_scanner_calls();
    const bool events = check_notification();
    return exports && calls && events ? 0 : 1;
}
