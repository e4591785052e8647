#include "platform.h"

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

// The system's own account of its end; no header of the compiler's declares it.
extern "C" __declspec(dllimport) BOOLEAN WINAPI RtlDllShutdownInProgress(void);

namespace brenvozulta_simulator {
namespace {

struct Thread_start {
    std::function<void()> body;
    HMODULE library;  // a reference of the thread's own
};

[[noreturn]] void fail()
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

DWORD WINAPI run(void* argument)
{
    HMODULE library = nullptr;
    {
        const std::unique_ptr<Thread_start> start(static_cast<Thread_start*>(argument));
        library = start->library;
        start->body();
    }
    FreeLibraryAndExitThread(library, 0);
}

}  // namespace

void start_driver_thread(std::function<void()> body)
{
    auto start = std::make_unique<Thread_start>(Thread_start{std::move(body), nullptr});
    const auto here = reinterpret_cast<const wchar_t*>(reinterpret_cast<std::uintptr_t>(&run));
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, here, &start->library) == 0) {
        fail();
    }
    const HANDLE thread = CreateThread(nullptr, 0, run, start.get(), 0, nullptr);
    if (thread == nullptr) {
        const DWORD error = GetLastError();
        FreeLibrary(start->library);
        SetLastError(error);
        fail();
    }
    start.release();
    CloseHandle(thread);
}

bool other_threads_are_gone()
{
    return RtlDllShutdownInProgress() != FALSE;
}

// The system's value, not the runtime's copy, which knows only the letters of the machine's code page.
std::string environment_text(const char* name)
{
    const std::wstring wide_name = std::filesystem::u8path(name).wstring();
    std::vector<wchar_t> value(GetEnvironmentVariableW(wide_name.c_str(), nullptr, 0) + 1);
    const DWORD length = GetEnvironmentVariableW(wide_name.c_str(), value.data(), static_cast<DWORD>(value.size()));
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, value.data(), static_cast<int>(length), nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, value.data(), static_cast<int>(length), text.data(), size, nullptr, nullptr);
    return text;
}

void report(const std::string& line)
{
    const std::string ended = line + "\n";
    std::fputs(ended.c_str(), stderr);
    OutputDebugStringA(ended.c_str());
}

}  // namespace brenvozulta_simulator
