#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "system_files.h"

namespace vyra_tool {
namespace {

File_error::Kind kind_of(int number)
{
    switch (number) {
        case EEXIST:
            return File_error::Kind::taken;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return File_error::Kind::no_room;
        case ENOENT:
        case ENOTDIR:
            return File_error::Kind::no_directory;
        case EACCES:
        case EPERM:
        case EROFS:
            return File_error::Kind::not_allowed;
        default:
            return File_error::Kind::other;
    }
}

File_error error_of(int number)
{
    return {kind_of(number), std::generic_category().message(number)};
}

File_error outcome(int result)
{
    return result == 0 ? File_error() : error_of(errno);
}

}  // namespace

System_file::~System_file()
{
    close();
}

System_file::System_file(System_file&& other) noexcept : handle_(std::exchange(other.handle_, -1)) {}

File_error System_file::create(const std::string& name)
{
    handle_ = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    return handle_ >= 0 ? File_error() : error_of(errno);
}

File_error System_file::write(const std::uint8_t* bytes, std::size_t size) const
{
    while (size > 0) {
        const ssize_t written = ::write(static_cast<int>(handle_), bytes, size);
        if (written >= 0) {
            bytes += written;
            size -= static_cast<std::size_t>(written);
        } else if (errno != EINTR) {
            return error_of(errno);
        }
    }
    return {};
}

File_error System_file::flush() const
{
    return outcome(fsync(static_cast<int>(handle_)));
}

File_error System_file::close()
{
    const auto descriptor = static_cast<int>(std::exchange(handle_, -1));
    return descriptor < 0 ? File_error() : outcome(::close(descriptor));
}

File_error move_file(const std::string& from, const std::string& to)
{
    return outcome(renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE));
}

File_error replace_file(const std::string& from, const std::string& to)
{
    return outcome(rename(from.c_str(), to.c_str()));
}

void remove_file(const std::string& name) noexcept
{
    unlink(name.c_str());
}

bool name_exists(const std::string& name)
{
    struct stat state = {};
    return lstat(name.c_str(), &state) == 0;
}

std::vector<std::string> names_in(const std::string& directory)
{
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    return names;
}

File_error create_directory(const std::string& name)
{
    std::error_code error;
    std::filesystem::create_directories(name, error);
    if (!error && !std::filesystem::is_directory(name, error) && !error) {
        error = std::make_error_code(std::errc::not_a_directory);
    }
    return error ? error_of(error.value()) : File_error();
}

std::string in_directory(const std::string& directory, const std::string& file)
{
    return directory.empty() || directory.back() == '/' ? directory + file : directory + "/" + file;
}

}  // namespace vyra_tool
