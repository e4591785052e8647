#include "notify/module_pin.h"

#include <windows.h>

namespace kvs::brenvozulta {

void pin_module() noexcept
{
    static const char inside_module = 0;
    HMODULE module = nullptr;
    // It cannot fail for the module that makes the call, which needs nothing that it does not have.
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, &inside_module, &module);
}

}  // namespace kvs::brenvozulta
