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

namespace vyra_tool {
namespace {

// Runs on a thread of the system. For everything but Ctrl-C and Ctrl-Break the process ends as soon as this returns, or
// after some seconds: it waits, and the program's orderly end comes first.
BOOL WINAPI note_control_event(DWORD event)
{
    request_interrupt();
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        Sleep(INFINITE);
    }
    return TRUE;
}

std::string to_utf8(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 0) {
        return {};
    }
    std::string converted(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, converted.data(), size, nullptr, nullptr);
    converted.resize(converted.size() - 1);  // without the terminator
    return converted;
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
