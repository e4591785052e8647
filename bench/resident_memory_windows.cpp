#include <windows.h>

#include <psapi.h>

#include "resident_memory.h"

std::size_t resident_bytes()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.WorkingSetSize;
}

bool forget_pages(const void*, std::size_t)
{
    return false;
}
