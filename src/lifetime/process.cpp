#include "lifetime/process.h"

#include <windows.h>

namespace kvs::brenvozulta {

void pin_module() noexcept
{
    static const char inside_module = 0;
    HMODULE module = nullptr;
    // It cannot fail for the module that makes the call, which needs nothing that it does not have.
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, &inside_module, &module);
}

bool process_is_ending() noexcept
{
    // Exported by every Windows, but in no import library.
    using Shutdown_in_progress = unsigned char(WINAPI*)();
    const HMODULE system = GetModuleHandleA("ntdll.dll");
    const FARPROC function = system == nullptr ? nullptr : GetProcAddress(system, "RtlDllShutdownInProgress");
    // By way of a function without a type of its own, since the two have nothing in common.
    return function != nullptr && reinterpret_cast<Shutdown_in_progress>(reinterpret_cast<void (*)()>(function))() != 0;
}

}  // namespace kvs::brenvozulta
