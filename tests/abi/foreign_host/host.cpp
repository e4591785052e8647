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

bool check_scanner_calls()
{
    uint32_t count = VYRA_MAX_SCANNERS;
    char names[VYRA_MAX_SCANNERS * VYRA_NAME_SLOT];
    const int32_t list = VyraGetDeviceList(&count, names);
    const int32_t version = VyraGetVerInfo(nullptr);
    const int32_t missing = VyraBrenvoGetFFDParameters();
    VyraBreakEnable();
    char line[128];
    wsprintfA(line, "before initialization: VyraGetDeviceList %d, VyraGetVerInfo %d, VyraBrenvoGetFFDParameters %d",
              list, version, missing);
    return report(list == VYRA_NOT_INITIALIZED && version == VYRA_OK && missing == VYRA_NOT_IMPLEMENTED, line);
}

int run_host()
{
    const bool exports = check_exports();
    const bool calls = check_scanner_calls();
    const bool events = check_notification();
    return exports && calls && events ? 0 : 1;
}
