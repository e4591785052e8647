#include "log/log_file.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

#include <shlobj.h>

#include <boost/filesystem.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/system/system_error.hpp>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <string>
#include <vector>

#include "log/log.h"

namespace kvs::brenvozulta {

namespace {

constexpr char current_name[] = "vyrabrenvozulta.log";
constexpr char previous_name[] = "vyrabrenvozulta2.log";
constexpr char sub_directory[] = "\\Orvane\\Halvern SDK\\";

// Of both files' paths when they are rotated. Longer ones are no reason to name another file: the log stays closed
// then.
constexpr std::size_t rotation_path_size = 256;

// {62AB5D82-FDC1-4DC3-A9DD-070D1D495D97}, the ProgramData folder.
constexpr GUID program_data_folder = {0x62AB5D82, 0xFDC1, 0x4DC3, {0xA9, 0xDD, 0x07, 0x0D, 0x1D, 0x49, 0x5D, 0x97}};

// Read and exchanged as a whole, by any thread, which Boost does under a spinlock: the log holds no lock over a line,
// so that one can be written wherever a lock is held. Never destroyed: nothing runs when the library is unloaded.
union Current_file {
    constexpr Current_file() : owner() {}
    ~Current_file() {}  // NOLINT(modernize-use-equals-default): it would be deleted
    log_file_owner owner;
};
Current_file current_file;

// Makes a file the process's own, unless another thread was quicker, whose file is then used.
void make_current(const log_file_owner& file)
{
    log_file_owner none;
    boost::atomic_compare_exchange(&current_file.owner, &none, file);
}

// Returns the process's file afterwards; none when the file cannot be opened.
log_file_owner open_as_current(const char* path)
{
    const auto file = boost::make_shared<Log_file>(path);
    if (!file->is_open()) {
        return {};
    }
    make_current(file);
    return current_log_file();
}

bool join(char (&path)[rotation_path_size], const char* directory, const char* name)
{
    const int length = std::snprintf(path, sizeof path, "%s%s", directory, name);
    return length >= 0 && static_cast<std::size_t>(length) < sizeof path;
}

// When the directory is missing all the same, also because its name is no path, the open that follows fails.
void make_directory(const std::string& directory)
{
    try {
        const boost::filesystem::path path(directory);
        if (!boost::filesystem::is_directory(path)) {
            boost::filesystem::create_directories(path);
        }
    } catch (const boost::system::system_error&) {  // filesystem errors, and a name that cannot be converted
    }
}

// Without the system's folder, one of this name on the current drive.
std::string log_folder()
{
    return log_directory() + sub_directory;
}

struct Task_memory {
    void operator()(wchar_t* text) const { CoTaskMemFree(text); }
};

}  // namespace

// Other processes may read and write the file meanwhile; every write goes to its end.
Log_file::Log_file(const char* path)
    : descriptor_(_sopen(path, _O_RDWR | _O_APPEND | _O_CREAT, _SH_DENYNO, _S_IREAD | _S_IWRITE))
{
}

Log_file::~Log_file()
{
    if (is_open()) {
        _close(descriptor_);
    }
}

log_file_owner current_log_file()
{
    return boost::atomic_load(&current_file.owner);
}

log_file_owner open_log_file(std::int64_t limit)
{
    auto file = current_log_file();
    std::string directory;  // which the system is asked for by the lines that need it, once
    if (!file) {            // also when a line before this one could not open it: every line tries again
        directory = log_folder();
        make_directory(directory);
        file = open_as_current((directory + current_name).c_str());
    }
    if (file && _filelength(file->descriptor()) >= limit) {
        file.reset();  // it could not be closed, nor then be moved
        log_rotate((directory.empty() ? log_folder() : directory).c_str());
        file = current_log_file();
    }
    return file;
}

void log_rotate(const char* directory)
{
    char current[rotation_path_size];
    char previous[rotation_path_size];
    const bool fits = join(current, directory, current_name) && join(previous, directory, previous_name);
    auto old = boost::atomic_exchange(&current_file.owner, log_file_owner());
    if (!fits) {
        return;  // a cut path would name another file
    }
    if (old && !old.unique()) {
        // Another thread's line is being written: the system would not let the file be moved, only its older generation
        // be deleted. A later line rotates.
        make_current(old);
        return;
    }
    old.reset();
    DeleteFileA(previous);
    MoveFileA(current, previous);
    // Gone even when it could not be moved: the limit holds, at the price of its lines. A file that another process has
    // open can neither be moved nor deleted: it stays, and the new one below is that same file.
    DeleteFileA(current);
    open_as_current(current);
}

void log_close()
{
    boost::atomic_store(&current_file.owner, log_file_owner());
}

std::string log_directory()
{
    PWSTR folder = nullptr;
    const HRESULT told = SHGetKnownFolderPath(program_data_folder, 0, nullptr, &folder);
    const std::unique_ptr<wchar_t, Task_memory> wide(folder);  // to be freed in both cases
    if (told != S_OK) {
        return {};
    }
    std::vector<char> narrow(std::wcslen(wide.get()) + 1);
    std::size_t converted = 0;
    if (wcstombs_s(&converted, narrow.data(), narrow.size(), wide.get(), narrow.size() - 1) != 0) {
        return {};
    }
    return narrow.data();
}

}  // namespace kvs::brenvozulta
