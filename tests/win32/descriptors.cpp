// The C runtime's descriptors: those of the system, with a table of their translation modes beside them. A text file
// has
// "\n" in memory and "\r\n" on disk.
#include "descriptors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <map>
#include <mutex>
#include <string>

#include "entry_point.h"
#include "io.h"
#include "test_bench/unseen.h"

namespace win32_double {
namespace {

Entry_point sopen_call{"_sopen"};
Entry_point close_call{"_close"};
Entry_point read_call{"_read"};
Entry_point write_call{"_write"};
Entry_point commit_call{"_commit"};
Entry_point unlink_call{"_unlink"};
Entry_point filelength_call{"_filelength"};
Entry_point filelengthi64_call{"_filelengthi64"};

constexpr char end_of_text = 0x1A;

class Mode_table {
public:
    void open(int descriptor, bool text)
    {
        const test_bench::Unseen_lock guard(lock_);
        text_[descriptor] = text;
    }
    void close(int descriptor)
    {
        const test_bench::Unseen_lock guard(lock_);
        text_.erase(descriptor);
    }
    bool is_text(int descriptor)
    {
        const test_bench::Unseen_lock guard(lock_);
        const auto found = text_.find(descriptor);
        return found != text_.end() && found->second;
    }
    // Of a descriptor that the double did not open (standard output) the mode is remembered by the caller alone: what
    // goes through the system's stdio is never translated.
    bool set_text(int descriptor, bool text)
    {
        const test_bench::Unseen_lock guard(lock_);
        const auto found = text_.find(descriptor);
        if (found == text_.end())
            return true;
        const bool before = found->second;
        found->second = text;
        return before;
    }
    size_t size()
    {
        const test_bench::Unseen_lock guard(lock_);
        return text_.size();
    }

private:
    std::mutex lock_;  // guards text_; a leaf
    std::map<int, bool> text_;
};

Mode_table& modes()
{
    static auto& only = *new Mode_table;
    return only;
}

int system_flags(int flags)
{
    int result = O_CLOEXEC | (flags & (_O_RDONLY | _O_WRONLY | _O_RDWR));
    if ((flags & _O_APPEND) != 0)
        result |= O_APPEND;
    if ((flags & _O_CREAT) != 0)
        result |= O_CREAT;
    if ((flags & _O_TRUNC) != 0)
        result |= O_TRUNC;
    if ((flags & _O_EXCL) != 0)
        result |= O_EXCL;
    return result;
}

std::string with_carriage_returns(const char* bytes, size_t size)
{
    std::string translated;
    translated.reserve(size + size / 8 + 2);
    for (size_t i = 0; i < size; ++i) {
        if (bytes[i] == '\n')
            translated += '\r';
        translated += bytes[i];
    }
    return translated;
}

// The caller's bytes that lie wholly in the first `written` bytes of the translation.
size_t caller_bytes(const char* bytes, size_t size, size_t written)
{
    size_t count = 0;
    for (size_t on_disk = 0; count < size; ++count) {
        on_disk += bytes[count] == '\n' ? 2u : 1u;
        if (on_disk > written)
            break;
    }
    return count;
}

// Takes the carriage returns before line feeds out of the text, up to the end-of-text mark; gives the new size. A line
// end that the caller's buffer cuts in two stays as it is.
size_t without_carriage_returns(char* bytes, size_t size)
{
    size_t kept = 0;
    for (size_t i = 0; i < size && bytes[i] != end_of_text; ++i) {
        if (bytes[i] == '\r' && i + 1 < size && bytes[i + 1] == '\n')
            continue;
        bytes[kept++] = bytes[i];
    }
    return kept;
}

// What one thread writes into a file orders nothing for the one that reads it.
ssize_t read_bytes(int descriptor, void* buffer, size_t size)
{
    const test_bench::Unordered unordered;
    return ::read(descriptor, buffer, size);
}

ssize_t write_bytes(int descriptor, const void* bytes, size_t size)
{
    const test_bench::Unordered unordered;
    return ::write(descriptor, bytes, size);
}

int64_t file_length(int descriptor)
{
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 ? status.st_size : -1;
}

}  // namespace

size_t open_descriptors()
{
    return modes().size();
}

}  // namespace win32_double

using namespace win32_double;

// Linux files are always shared with everyone: the share mode is accepted and has no effect.
int _sopen(const char* path, int flags, int share, ...)
{
    if (sopen_call.refused_by_errno())
        return -1;
    mode_t permission = S_IRUSR | S_IRGRP | S_IROTH;
    if ((flags & _O_CREAT) != 0) {
        va_list arguments;
        va_start(arguments, share);
        if ((va_arg(arguments, int) & _S_IWRITE) != 0)
            permission |= S_IWUSR | S_IWGRP | S_IWOTH;
        va_end(arguments);
    }
    const int descriptor = ::open(path, system_flags(flags), permission);
    if (descriptor != -1)
        modes().open(descriptor, (flags & _O_BINARY) == 0);
    return descriptor;
}

int _close(int descriptor)
{
    if (close_call.refused_by_errno())
        return -1;
    // Before the close: behind it the number may already be another thread's.
    modes().close(descriptor);
    return ::close(descriptor);
}

int _read(int descriptor, void* buffer, unsigned int size)
{
    if (read_call.refused_by_errno())
        return -1;
    const ssize_t got = read_bytes(descriptor, buffer, size);
    if (got <= 0 || !modes().is_text(descriptor))
        return static_cast<int>(got);
    return static_cast<int>(without_carriage_returns(static_cast<char*>(buffer), static_cast<size_t>(got)));
}

int _write(int descriptor, const void* buffer, unsigned int size)
{
    if (write_call.refused_by_errno())
        return -1;
    const auto* bytes = static_cast<const char*>(buffer);
    if (!modes().is_text(descriptor))
        return static_cast<int>(write_bytes(descriptor, bytes, size));
    // One write of the system's, so that it stays whole beside those of other threads.
    const std::string translated = with_carriage_returns(bytes, size);
    const ssize_t written = write_bytes(descriptor, translated.data(), translated.size());
    if (written < 0)
        return -1;
    return static_cast<int>(caller_bytes(bytes, size, static_cast<size_t>(written)));
}

int _commit(int descriptor)
{
    return commit_call.refused_by_errno() ? -1 : ::fdatasync(descriptor);
}

int32_t _filelength(int descriptor)
{
    if (filelength_call.refused_by_errno())
        return -1;
    const int64_t length = file_length(descriptor);
    if (length <= INT32_MAX)
        return static_cast<int32_t>(length);
    errno = EOVERFLOW;
    return -1;
}

int64_t _filelengthi64(int descriptor)
{
    return filelengthi64_call.refused_by_errno() ? -1 : file_length(descriptor);
}

int _setmode(int descriptor, int mode)
{
    if (mode != _O_TEXT && mode != _O_BINARY) {
        errno = EINVAL;
        return -1;
    }
    return modes().set_text(descriptor, mode == _O_TEXT) ? _O_TEXT : _O_BINARY;
}

int _unlink(const char* path)
{
    return unlink_call.refused_by_errno() ? -1 : ::unlink(path);
}

int _isatty(int descriptor)
{
    return ::isatty(descriptor);
}

int _fileno(FILE* stream)
{
    return ::fileno(stream);
}
