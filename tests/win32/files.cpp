// Files by name.
#include <fcntl.h>
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
        default:
            return ERROR_GEN_FAILURE;
    }
}

BOOL succeeded(bool done)
{
    if (!done)
        SetLastError(win32_error(errno));
    return done ? TRUE : FALSE;
}

}  // namespace

BOOL DeleteFileA(LPCSTR path)
{
    return delete_call.refused() ? FALSE : succeeded(::unlink(path) == 0);
}

BOOL MoveFileA(LPCSTR from, LPCSTR to)
{
    if (move_call.refused())
        return FALSE;
    return succeeded(::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0);
}
