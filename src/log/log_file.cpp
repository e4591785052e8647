#include "log/log_file.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

#include <shlobj.h>

#include <boost/filesystem.hpp>
#include <boost/system/error_code.hpp>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include "api/get_manager.h"
#include "log/log.h"
#include "manager/manager.h"

namespace kvs::brenvozulta {

std::atomic<int> log_descriptor{log_closed};

namespace {

constexpr char current_name[] = "vyrabrenvozulta.log";
constexpr char previous_name[] = "vyrabrenvozulta2.log";
constexpr std::size_t rotation_path_size = 256;

// {62AB5D82-FDC1-4DC3-A9DD-070D1D495D97}, the ProgramData folder.
constexpr GUID program_data_folder = {0x62AB5D82, 0xFDC1, 0x4DC3, {0xA9, 0xDD, 0x07, 0x0D, 0x1D, 0x49, 0x5D, 0x97}};

// Other processes may read and write the file meanwhile; every write goes to its end.
int open_file(const char* path)
{
    return _sopen(path, _O_RDWR | _O_APPEND | _O_CREAT, _SH_DENYNO, _S_IREAD | _S_IWRITE);
}

// Makes a fresh descriptor the process's own. When another thread was quicker its file is used, and this one is closed.
bool publish(int file)
{
    int none = log_closed;
    if (log_descriptor.compare_exchange_strong(none, file)) {
        return true;
    }
    _close(file);
    return false;
}

bool join(char (&path)[rotation_path_size], const char* directory, const char* name)
{
    const int length = std::snprintf(path, sizeof(path), "%s%s", directory, name);
    return length >= 0 && static_cast<std::size_t>(length) < sizeof(path);
}

}  // namespace

int log_open()
{
    const int open = log_descriptor.load();
    if (open != log_closed) {
        return open;
    }
    const std::string directory = log_directory() + log_sub_directory;
    boost::system::error_code ignored;  // when the directory is missing all the same, the open below fails
    if (!boost::filesystem::is_directory(directory, ignored)) {
        boost::filesystem::create_directories(directory, ignored);
    }
    const int file = open_file((directory + current_name).c_str());
    if (file == log_closed) {
        return log_closed;
    }
    if (!publish(file)) {
        return log_descriptor.load();
    }
    if (_filelength(file) >= get_manager()->log_max_size()) {
        log_rotate(directory.c_str());
        return log_descriptor.load();
    }
    return file;
}

void log_rotate(const char* directory)
{
    char current[rotation_path_size];
    char previous[rotation_path_size];
    const bool fits = join(current, directory, current_name) && join(previous, directory, previous_name);
    log_close();
    if (!fits) {
        return;  // a cut path would name another file
    }
    DeleteFileA(previous);
    MoveFileA(current, previous);
    DeleteFileA(current);  // gone even when it could not be moved: the limit holds, at the price of its lines
    const int file = open_file(current);
    if (file != log_closed) {
        publish(file);
    }
}

void log_close()
{
    const int file = log_descriptor.exchange(log_closed);
    if (file != log_closed) {
        _close(file);
    }
}

std::string log_directory()
{
    PWSTR wide = nullptr;
    std::string directory;
    if (SHGetKnownFolderPath(program_data_folder, 0, nullptr, &wide) == S_OK) {
        std::vector<char> narrow(std::wcslen(wide) + 1);
        std::size_t converted = 0;
        if (wcstombs_s(&converted, narrow.data(), narrow.size(), wide, narrow.size() - 1) == 0) {
            directory = narrow.data();
        }
    }
    CoTaskMemFree(wide);
    return directory;
}

}  // namespace kvs::brenvozulta
