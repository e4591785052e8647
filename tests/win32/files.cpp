// Files by name. An open one is neither moved nor deleted.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "entry_point.h"
#include "windows.h"

namespace {

win32_double::Entry_point delete_call{"DeleteFileA"};
win32_double::Entry_point move_call{"MoveFileA"};

DWORD win32_error(int error)
{
    switch (error) {
        case ENOENT:
            return ERROR_FILE_NOT_FOUND;
        case ENOTDIR:
            return ERROR_PATH_NOT_FOUND;
        case EEXIST:
            return ERROR_ALREADY_EXISTS;
        case EISDIR:
        case EPERM:
        case EROFS:
        case EACCES:
            return ERROR_ACCESS_DENIED;
        case ENOSPC:
            return ERROR_DISK_FULL;
        case EWOULDBLOCK:
            return ERROR_SHARING_VIOLATION;
        default:
            return ERROR_GEN_FAILURE;
    }
}

// A file for the length of its move or deletion. What _sopen has opened, in whatever process, is locked as shared.
class Held_file {
public:
    explicit Held_file(LPCSTR path) : descriptor_(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~Held_file()
    {
        if (descriptor_ != -1) {
            ::close(descriptor_);
        }
    }
    Held_file(const Held_file&) = delete;
    Held_file& operator=(const Held_file&) = delete;

    // Of a file that cannot be opened the operation itself says what is wrong.
    bool is_free() const { return descriptor_ == -1 || ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0; }

private:
    const int descriptor_;
};

BOOL succeeded(bool done)
{
    if (!done) {
        SetLastError(win32_error(errno));
    }
    return done ? TRUE : FALSE;
}

}  // namespace

BOOL DeleteFileA(LPCSTR path)
{
    if (delete_call.refused()) {
        return FALSE;
    }
    const Held_file file(path);
    return succeeded(file.is_free() && ::unlink(path) == 0);
}

BOOL MoveFileA(LPCSTR from, LPCSTR to)
{
    if (move_call.refused()) {
        return FALSE;
    }
    const Held_file file(from);
    return succeeded(file.is_free() && ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0);
}
