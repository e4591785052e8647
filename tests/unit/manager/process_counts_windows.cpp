#include "process_counts.h"

#include <windows.h>

#include <tlhelp32.h>

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

}  // namespace

std::map<std::string, std::size_t> process_counts()
{
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    WNDCLASSEXA description = {};
    description.cbSize = sizeof(description);
    const bool has_class = GetClassInfoExA(GetModuleHandleA(nullptr), notifier_class, &description) != 0;
    return {{"threads", own_threads()},
            {"handles", handles},
            {"windows", FindWindowA(notifier_class, nullptr) != nullptr ? 1 : 0},
            {"window classes", has_class ? 1 : 0}};
}

}  // namespace manager_tests
