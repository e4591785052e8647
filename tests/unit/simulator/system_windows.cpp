#include "system.h"

#include <windows.h>

#include <psapi.h>

#include <filesystem>

namespace simulator_test {

void set_environment(const char* name, const std::string& value)
{
    const std::wstring wide = std::filesystem::u8path(value).wstring();
    SetEnvironmentVariableW(std::filesystem::u8path(name).wstring().c_str(), wide.empty() ? nullptr : wide.c_str());
}

std::size_t memory_in_use()
{
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

void* load_library(const char* path)
{
    return LoadLibraryA(path);
}

void* symbol_of(void* library, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void unload_library(void* library)
{
    FreeLibrary(static_cast<HMODULE>(library));
}

}  // namespace simulator_test
