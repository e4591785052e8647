#include <windows.h>

#include "halting_buffer.h"

namespace exit_host {

namespace {

constexpr DWORD halt_patience_ms = 20'000;

std::uint8_t* buffer = nullptr;
HANDLE halted = nullptr;

LONG CALLBACK halt(EXCEPTION_POINTERS* exception)
{
    const auto& record = *exception->ExceptionRecord;
    if (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION &&
        record.ExceptionInformation[1] == reinterpret_cast<ULONG_PTR>(buffer)) {
        SetEvent(halted);
        Sleep(INFINITE);
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

std::uint8_t* halting_buffer(std::size_t size)
{
    buffer = static_cast<std::uint8_t*>(VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS));
    halted = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    AddVectoredExceptionHandler(1, halt);
    return buffer;
}

bool wait_until_halted()
{
    return WaitForSingleObject(halted, halt_patience_ms) == WAIT_OBJECT_0;
}

}  // namespace exit_host
