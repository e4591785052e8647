#include "unit/device/installed_library.h"

#include <windows.h>

namespace test_support {

bool load_installed_library()
{
    return LoadLibraryA("vyrabrenvozulta.dll") != nullptr;
}

void unload_installed_library()
{
    while (const HMODULE library = GetModuleHandleA("vyrabrenvozulta.dll")) {
        FreeLibrary(library);
    }
}

}  // namespace test_support
