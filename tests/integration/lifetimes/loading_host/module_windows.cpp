#include <windows.h>

#include <cstdlib>
#include <map>
#include <string>

#include "module.h"

namespace loading_host {

bool load()
{
    return LoadLibraryA(LIBRARY_FILE) != nullptr;
}

void unload()
{
    FreeLibrary(GetModuleHandleA(LIBRARY_FILE));
}

bool is_loaded()
{
    return GetModuleHandleA(LIBRARY_FILE) != nullptr;
}

void* address_of(const char* name)
{
    static const std::map<std::string, const char*> decorated = {
        {"InitUsbNotifier", "?InitUsbNotifier@@YA_NPEAD@Z"},
        {"TerminateUsbNotifier", "?TerminateUsbNotifier@@YA_NPEAD@Z"}};
    const auto found = decorated.find(name);
    const auto address =
        GetProcAddress(GetModuleHandleA(LIBRARY_FILE), found == decorated.end() ? name : found->second);
    if (address == nullptr) {
        std::exit(3);
    }
    return reinterpret_cast<void*>(address);
}

void prepare_process()
{
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS* exception) -> LONG {
        TerminateProcess(GetCurrentProcess(), exception->ExceptionRecord->ExceptionCode);
        return EXCEPTION_EXECUTE_HANDLER;
    });
    if (SetProcessAffinityMask(GetCurrentProcess(), 1) == FALSE) {
        std::exit(3);
    }
}

}  // namespace loading_host
