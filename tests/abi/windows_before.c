/* A host that includes the system's header before the library's. */
#undef WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "vyra/vyra.h"

#include "abi/windows_headers.h"

int capabilities_size_with_windows_before(void)
{
    VyraDeviceCapabilities record;
    return VyraBrenvoGetCapabilities(77, 1, &record) == VYRA_OK ? 0 : (int)sizeof(record);
}
