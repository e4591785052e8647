// The C runtime's descriptors: those of the system, with a table of their translation modes beside them. A text file
// has "\n" in memory and "\r\n" on disk.
#include "descriptors.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <map>
#include <mutex>
#include <string>

#include "entry_point.h"
#include "io.h"
#include "stale_handles.h"
#include "test_bench/unseen.h"

namespace win32_double {
namespace {

Entry_point sopen_call{"_sopen"};
Entry_point close_call{"_close"};
Entry_point write_call{"_write"};
Entry_point commit_call{"_commit"};
Entry_point filelength_call{"_filelength"};

class Mode_table {
public:
    void open(int descriptor, bool text)
    {
        const test_bench::Unseen_lock guard(lock_);
        text_[descriptor] = text;
    }
    // False when it is not open.
    bool close(int descriptor)
    {
        const test_bench::Unseen_lock guard(lock_);
        if (text_.erase(descriptor) == 1) {
            return true;
        }
        note_stale_handle();
        return false;
    }
    bool is_text(int descriptor)
    {
        const test_bench::Unseen_lock guard(lock_);
        const auto found = text_.find(descriptor);
        if (found == text_.end()) {
            note_stale_handle();
        }
        return found != text_.end() && found->second;
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
    if ((flags & _O_APPEND) != 0) {
        result |= O_APPEND;
    }
    if ((flags & _O_CREAT) != 0) {
        result |= O_CREAT;
    }
    if ((flags & _O_TRUNC) != 0) {
        result |= O_TRUNC;
    }
    if ((flags & _O_EXCL) != 0) {
        result |= O_EXCL;
    }
    return result;
}

// Opens a file and shares it with all who open it, but with none who would move or delete it. A file that goes while it
// is being opened was never there.
int open_shared(const char* path, int flags, mode_t permission)
{
    for (;;) {
        const int descriptor = ::open(path, flags, permission);
        if (descriptor == -1) {
            return -1;
        }
        struct stat status {};
        if (::flock(descriptor, LOCK_SH) != 0 || ::fstat(descriptor, &status) != 0 || status.st_nlink > 0) {
            return descriptor;
        }
        ::close(descriptor);
    }
}

std::string with_carriage_returns(const char* bytes, size_t size)
{
    std::string translated;
    translated.reserve(size + size / 8 + 2);
    for (size_t i = 0; i < size; ++i) {
        if (bytes[i] == '\n') {
            translated += '\r';
        }
        translated += bytes[i];
    }
    return translated;
}

// The caller's bytes that lie wholly in the first `written` bytes of the translation.
size_t caller_bytes(const char* bytes, size_t size, size_t written)
{
    size_t count = 0;
    for (size_t on_disk = 0; count < size; ++count) {
        on_disk += bytes[count] == '\n' ? 2U : 1U;
        if (on_disk > written) {
            break;
        }
    }
    return count;
}

// What one thread writes into a file orders nothing for one that reads it.
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

// Of the share modes there is one, that for all who read and write.
int _sopen(const char* path, int flags, int share, ...)
{
    if (sopen_call.refused_by_errno()) {
        return -1;
    }
    mode_t permission = S_IRUSR | S_IRGRP | S_IROTH;
    if ((flags & _O_CREAT) != 0) {
        va_list arguments;
        va_start(arguments, share);
        if ((va_arg(arguments, int) & _S_IWRITE) != 0) {
            permission |= S_IWUSR | S_IWGRP | S_IWOTH;
        }
        va_end(arguments);
    }
    if (share != _SH_DENYNO) {
        errno = EINVAL;
        return -1;
    }
    const int descriptor = open_shared(path, system_flags(flags), permission);
    if (descriptor != -1) {
        modes().open(descriptor, (flags & _O_BINARY) == 0);
    }
    return descriptor;
}

int _close(int descriptor)
{
    if (close_call.refused_by_errno()) {
        return -1;
    }
    // Before the close: behind it the number may already be another thread's.
    if (modes().close(descriptor)) {
        return ::close(descriptor);
    }
    errno = EBADF;
    return -1;
}

int _write(int descriptor, const void* buffer, unsigned int size)
{
    if (write_call.refused_by_errno()) {
        return -1;
    }
    const auto* bytes = static_cast<const char*>(buffer);
    if (!modes().is_text(descriptor)) {
        return static_cast<int>(write_bytes(descriptor, bytes, size));
    }
    // One write of the system's, so that it stays whole beside those of other threads.
    const std::string translated = with_carriage_returns(bytes, size);
    const ssize_t written = write_bytes(descriptor, translated.data(), translated.size());
    if (written < 0) {
        return -1;
    }
    return static_cast<int>(caller_bytes(bytes, size, static_cast<size_t>(written)));
}

int _commit(int descriptor)
{
    return commit_call.refused_by_errno() ? -1 : ::fdatasync(descriptor);
}

int32_t _filelength(int descriptor)
{
    if (filelength_call.refused_by_errno()) {
        return -1;
    }
    const int64_t length = file_length(descriptor);
    if (length <= INT32_MAX) {
        return static_cast<int32_t>(length);
    }
    errno = EOVERFLOW;
    return -1;
}

int _isatty(int descriptor)
{
    return ::isatty(descriptor);
}

int _fileno(FILE* stream)
{
    return ::fileno(stream);
}
