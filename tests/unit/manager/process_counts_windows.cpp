#include "process_counts.h"

#include <windows.h>

#include <tlhelp32.h>

#include <cstdint>

namespace manager_tests {

namespace {

constexpr const char* notifier_class = "VYRABRENVOZULTA";

std::size_t own_threads()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    std::size_t count = 0;
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Thread32First(snapshot, &entry); more != FALSE; more = Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

// Counted one by one: Wine has no figure of its own. Handles are small multiples of 4, the lowest free one first.
std::size_t own_handles()
{
    constexpr std::uintptr_t highest = 0x8000;
    std::size_t count = 0;
    for (std::uintptr_t value = 4; value <= highest; value += 4) {
        DWORD flags = 0;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != 0 ? 1 : 0;
    }
    return count;
}

}  // namespace

std::map<std::string, std::size_t> process_counts()
{
    WNDCLASSEXA description = {};
    description.cbSize = sizeof(description);
    const bool has_class = GetClassInfoExA(GetModuleHandleA(nullptr), notifier_class, &description) != 0;
    return {{"threads", own_threads()},
            {"handles", own_handles()},
            {"windows", FindWindowA(notifier_class, nullptr) != nullptr ? 1 : 0},
            {"window classes", has_class ? 1 : 0}};
}

std::size_t late_handles()
{
    return 8;
}

}  // namespace manager_tests
