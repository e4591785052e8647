#include "support/process_counts.h"

#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>
#include <cstdint>

#include "support/broadcasts.h"

namespace test_support {

namespace {

// A lock gets its event when two threads first meet at it. A handle that is lost in every cycle, or in every tenth, is
// many more.
constexpr std::size_t late_handles = 8;

std::size_t own_threads()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    std::size_t count = 0;
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof entry;
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

Process_counts process_counts(const char* window_class)
{
    WNDCLASSEXA description = {};
    description.cbSize = sizeof description;
    const bool has_class = GetClassInfoExA(GetModuleHandleA(nullptr), window_class, &description) != 0;
    return {{"threads", own_threads()},
            {"handles", own_handles()},
            {"windows", find_window(window_class) != nullptr ? 1 : 0},
            {"window classes", has_class ? 1 : 0}};
}

bool is_no_more_than(const Process_counts& before, const Process_counts& after)
{
    return std::all_of(after.begin(), after.end(), [&](const auto& count) {
        return count.second <= before.at(count.first) + (count.first == "handles" ? late_handles : 0);
    });
}

}  // namespace test_support
