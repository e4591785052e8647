// The calling thread: its number, its last error, its sleep.
#include <time.h>
#include <unistd.h>

#include <cerrno>

#include "entry_point.h"
#include "windows.h"

namespace {

win32_double::Entry_point sleep_call{"Sleep"};
thread_local DWORD last_error = ERROR_SUCCESS;

}  // namespace

DWORD GetLastError()
{
    return last_error;
}

void SetLastError(DWORD error)
{
    last_error = error;
}

DWORD GetCurrentThreadId()
{
    thread_local const DWORD number = static_cast<DWORD>(gettid());
    return number;
}

DWORD GetCurrentProcessId()
{
    return static_cast<DWORD>(getpid());
}

// There is no way for it to fail; only its calls are counted.
void Sleep(DWORD milliseconds)
{
    sleep_call.enter();
    timespec rest{static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1'000'000};
    while (nanosleep(&rest, &rest) == -1 && errno == EINTR) {
    }
}
