#include <windows.h>

#include <filesystem>
#include <stdexcept>

#include "support/child_system.h"

namespace test_support {
namespace {

struct Pipe {
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;

    Pipe()
    {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        if (CreatePipe(&reading, &writing, &inherited, 0) == FALSE) {
            throw std::runtime_error("no pipe can be made");
        }
    }
};

// Quoted for the C runtime's rules; the tests' arguments hold no quotation marks and end in no backslash.
std::wstring command_line(const std::vector<std::string>& command)
{
    std::wstring line;
    for (const std::string& word : command) {
        const bool program = line.empty();
        line += (program ? L"\"" : L" \"") + std::filesystem::u8path(word).wstring() + (program ? L".exe\"" : L"\"");
    }
    return line;
}

// The child gets the parent's environment: the variables stand there while it is started.
class Variables {
public:
    explicit Variables(const Environment& environment) : environment_(environment)
    {
        for (const auto& [name, value] : environment_) {
            SetEnvironmentVariableA(name.c_str(), value.c_str());
        }
    }
    ~Variables()
    {
        for (const auto& [name, value] : environment_) {
            SetEnvironmentVariableA(name.c_str(), nullptr);
        }
    }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

private:
    const Environment& environment_;
};

HANDLE handle_of(System_handle handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

System_handle number_of(HANDLE handle)
{
    return reinterpret_cast<System_handle>(handle);
}

// Without a console there is none to send the event through. It comes as the system brings it: on a new thread of the
// child, which begins in the system's own distribution of such events to the handlers.
void send_control_event(System_handle process, DWORD event)
{
    void* const routine = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernelbase.dll"), "CtrlRoutine"));
    HANDLE thread =
        routine == nullptr
            ? nullptr
            : CreateRemoteThread(handle_of(process), nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(routine),
                                 reinterpret_cast<void*>(static_cast<std::uintptr_t>(event)), 0, nullptr);
    if (thread == nullptr) {
        throw std::runtime_error("cannot send the child process an event of its console");
    }
    CloseHandle(thread);
}

}  // namespace

std::string program_folder()
{
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    return std::filesystem::path(self).parent_path().u8string();
}

Spawned spawn(const std::vector<std::string>& command, const Environment& environment, const std::string& input)
{
    const Pipe in;
    const Pipe out;
    const Pipe err;
    for (HANDLE own : {in.writing, out.reading, err.reading}) {
        SetHandleInformation(own, HANDLE_FLAG_INHERIT, 0);
    }
    // What fits into the pipe needs no reader yet; a child that ended early would leave none.
    DWORD written = 0;
    const bool fed = WriteFile(in.writing, input.data(), static_cast<DWORD>(input.size()), &written, nullptr) != FALSE;
    CloseHandle(in.writing);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in.reading;
    startup.hStdOutput = out.writing;
    startup.hStdError = err.writing;
    const Variables variables(environment);
    PROCESS_INFORMATION child{};
    std::wstring line = command_line(command);
    const bool started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP, nullptr,
                                        nullptr, &startup, &child) != FALSE;
    const DWORD error = GetLastError();
    for (HANDLE childs : {in.reading, out.writing, err.writing}) {
        CloseHandle(childs);
    }
    if (!started) {
        throw std::runtime_error("cannot start " + command.front() + ": error " + std::to_string(error));
    }
    if (!fed) {
        throw std::runtime_error("cannot write the input of " + command.front());
    }
    CloseHandle(child.hThread);
    return {number_of(child.hProcess), number_of(out.reading), number_of(err.reading)};
}

std::size_t read_some(System_handle pipe, char* buffer, std::size_t size)
{
    DWORD count = 0;
    return ReadFile(handle_of(pipe), buffer, static_cast<DWORD>(size), &count, nullptr) != FALSE ? count : 0;
}

void close_pipe(System_handle pipe)
{
    CloseHandle(handle_of(pipe));
}

void interrupt(System_handle process)
{
    send_control_event(process, CTRL_C_EVENT);
}

void close_console(System_handle process)
{
    send_control_event(process, CTRL_CLOSE_EVENT);
}

void end_by_force(System_handle process)
{
    TerminateProcess(handle_of(process), 0xFFFFFFFF);
}

int wait_for_exit(System_handle process)
{
    DWORD code = 0;
    WaitForSingleObject(handle_of(process), INFINITE);
    GetExitCodeProcess(handle_of(process), &code);
    CloseHandle(handle_of(process));
    return static_cast<int>(code);
}

}  // namespace test_support
