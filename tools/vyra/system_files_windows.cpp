#include <windows.h>

#include <algorithm>
#include <utility>

#include "system_files.h"
#include "wide_text.h"

namespace vyra_tool {
namespace {

constexpr DWORD largest_write = 1U << 24;  // some network drives refuse more at once
constexpr DWORD move_patience_ms = 2000;
constexpr DWORD move_pause_ms = 20;

HANDLE native(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

File_error::Kind kind_of(DWORD code)
{
    switch (code) {
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return File_error::Kind::taken;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return File_error::Kind::no_room;
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_DIRECTORY:
            return File_error::Kind::no_directory;
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
        case ERROR_SHARING_VIOLATION:
            return File_error::Kind::not_allowed;
        default:
            return File_error::Kind::other;
    }
}

File_error error_of(DWORD code)
{
    wchar_t text[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text,
                                  static_cast<DWORD>(std::size(text)), nullptr);
    while (length > 0 && (text[length - 1] <= L' ' || text[length - 1] == L'.')) {
        --length;  // it ends a sentence and a line
    }
    return {kind_of(code), length > 0 ? to_utf8(std::wstring(text, length)) : "error " + std::to_string(code)};
}

File_error outcome(BOOL done)
{
    return done != FALSE ? File_error() : error_of(GetLastError());
}

bool is_directory(const std::wstring& name)
{
    const DWORD attributes = GetFileAttributesW(name.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// A virus scanner or an indexer looks into a file as soon as it was written, and keeps it from being moved meanwhile.
File_error move_patiently(const std::wstring& from, const std::wstring& to, DWORD flags)
{
    for (DWORD waited = 0; MoveFileExW(from.c_str(), to.c_str(), flags) == FALSE; waited += move_pause_ms) {
        const DWORD code = GetLastError();
        if ((code != ERROR_SHARING_VIOLATION && code != ERROR_ACCESS_DENIED) || waited >= move_patience_ms) {
            return error_of(code);
        }
        Sleep(move_pause_ms);
    }
    return {};
}

// By its text: what stands before the last separator is the directory above it, in every form of a path.
File_error create_with_parents(std::wstring name)
{
    while (name.size() > 1 && (name.back() == L'\\' || name.back() == L'/') && name[name.size() - 2] != L':') {
        name.pop_back();
    }
    if (is_directory(name) || CreateDirectoryW(name.c_str(), nullptr) != FALSE) {
        return {};
    }
    const DWORD code = GetLastError();
    const std::size_t separator = name.find_last_of(L"\\/");
    if (code != ERROR_PATH_NOT_FOUND || separator == std::wstring::npos || separator == 0) {
        return is_directory(name) ? File_error() : error_of(code);  // another program may have been quicker
    }
    if (File_error error = create_with_parents(name.substr(0, separator))) {
        return error;
    }
    return CreateDirectoryW(name.c_str(), nullptr) != FALSE || is_directory(name) ? File_error()
                                                                                  : error_of(GetLastError());
}

}  // namespace

System_file::~System_file()
{
    close();
}

System_file::System_file(System_file&& other) noexcept : handle_(std::exchange(other.handle_, -1)) {}

File_error System_file::create(const std::string& name)
{
    handle_ = reinterpret_cast<std::intptr_t>(CreateFileW(to_wide(name).c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                                          nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    return native(handle_) != INVALID_HANDLE_VALUE ? File_error() : error_of(GetLastError());
}

File_error System_file::write(const std::uint8_t* bytes, std::size_t size) const
{
    while (size > 0) {
        const auto part = static_cast<DWORD>(std::min<std::size_t>(size, largest_write));
        DWORD written = 0;
        if (WriteFile(native(handle_), bytes, part, &written, nullptr) == FALSE) {
            return error_of(GetLastError());
        }
        if (written == 0) {
            return error_of(ERROR_DISK_FULL);
        }
        bytes += written;
        size -= written;
    }
    return {};
}

File_error System_file::flush() const
{
    return outcome(FlushFileBuffers(native(handle_)));
}

File_error System_file::close()
{
    const HANDLE handle = native(std::exchange(handle_, -1));
    return handle == INVALID_HANDLE_VALUE ? File_error() : outcome(CloseHandle(handle));
}

File_error move_file(const std::string& from, const std::string& to)
{
    return move_patiently(to_wide(from), to_wide(to), 0);
}

File_error replace_file(const std::string& from, const std::string& to)
{
    return move_patiently(to_wide(from), to_wide(to), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

void remove_file(const std::string& name) noexcept
{
    DeleteFileW(to_wide(name).c_str());
}

bool name_exists(const std::string& name)
{
    return GetFileAttributesW(to_wide(name).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::vector<std::string> names_in(const std::string& directory)
{
    std::vector<std::string> names;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(to_wide(in_directory(directory, "*")).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        names.push_back(to_utf8(found.cFileName));
    } while (FindNextFileW(search, &found) != FALSE);
    FindClose(search);
    return names;
}

File_error create_directory(const std::string& name)
{
    return create_with_parents(to_wide(name));
}

std::string in_directory(const std::string& directory, const std::string& file)
{
    if (directory.empty() || directory.back() == '/' || directory.back() == '\\' || directory.back() == ':') {
        return directory + file;
    }
    // In the style of the directory: a path that begins with \\?\ knows no other separator.
    const bool backslashes = directory.find('\\') != std::string::npos && directory.find('/') == std::string::npos;
    return directory + (backslashes ? '\\' : '/') + file;
}

}  // namespace vyra_tool
