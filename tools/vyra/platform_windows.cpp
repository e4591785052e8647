#include <windows.h>
// shellapi.h needs windows.h before it.
#include <io.h>
#include <knownfolders.h>
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

#include <memory>

#include "interrupt.h"
#include "platform.h"
#include "wide_text.h"

namespace vyra_tool {
namespace {

constexpr char ended_at_once[] = "vyra: ended at once: what was under way is unfinished\n";

// Runs on a thread of the system. For everything but Ctrl-C and Ctrl-Break the process ends as soon as this returns, or
// after some seconds: it waits, and the program's orderly end comes first.
BOOL WINAPI note_control_event(DWORD event)
{
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        request_interrupt(grace_of_closed_console);
        Sleep(INFINITE);
    }
    if (may_end_at_once()) {
        DWORD written = 0;  // not through the C runtime: its locks may be what the program hangs in
        WriteFile(GetStdHandle(STD_ERROR_HANDLE), ended_at_once, sizeof ended_at_once - 1, &written, nullptr);
        TerminateProcess(GetCurrentProcess(), 1);
    }
    request_interrupt();
    return TRUE;
}

}  // namespace

Interrupt_listener::Interrupt_listener()
{
    SetConsoleCtrlHandler(nullptr, FALSE);  // a parent may have passed on that Ctrl-C is ignored
    SetConsoleCtrlHandler(note_control_event, TRUE);
}

// The handler stays: a Ctrl-C that comes too late does not turn an orderly end into another.
Interrupt_listener::~Interrupt_listener() = default;

std::FILE* take_standard_output()
{
    const int copy = _dup(_fileno(stdout));
    std::FILE* results = copy < 0 ? nullptr : _fdopen(copy, "w");
    _dup2(_fileno(stderr), _fileno(stdout));
    return results;
}

unsigned exchange_console_code_page(unsigned code_page)
{
    const UINT before = GetConsoleOutputCP();
    if (before != 0) {
        SetConsoleOutputCP(code_page);
    }
    return before;
}

bool is_terminal(std::FILE* stream)
{
    return _isatty(_fileno(stream)) != 0;
}

std::string read_input_line()
{
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    std::string line;
    char character = 0;
    DWORD count = 0;
    while (ReadFile(input, &character, 1, &count, nullptr) && count == 1 && character != '\n') {
        if (character != '\r') {
            line += character;
        }
    }
    return line;
}

std::string program_data_folder()
{
    PWSTR folder = nullptr;
    const std::string path =
        SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &folder) == S_OK ? to_utf8(folder) : "";
    CoTaskMemFree(folder);
    return path;
}

std::vector<std::string> program_arguments(int, char**)
{
    int count = 0;
    const std::unique_ptr<wchar_t*[], decltype(&LocalFree)> values(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                   LocalFree);
    std::vector<std::string> arguments;
    for (int i = 1; values && i < count; ++i) {
        arguments.push_back(to_utf8(values[static_cast<std::size_t>(i)]));
    }
    return arguments;
}

}  // namespace vyra_tool
