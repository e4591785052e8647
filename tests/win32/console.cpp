// Ctrl+C: the system's SIGINT becomes a call of the handlers on a thread of its own, as on Windows.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <thread>
#include <vector>

#include "entry_point.h"
#include "test_bench/unseen.h"
#include "windows.h"

namespace {

win32_double::Entry_point handler_call{"SetConsoleCtrlHandler"};

struct Console {
    std::mutex lock;  // guards handlers and ignored; a leaf
    std::vector<PHANDLER_ROUTINE> handlers;
    bool ignored = false;
    std::once_flag watched;
};

Console& console()
{
    static auto& only = *new Console;
    return only;
}

// A signal handler may only write; the watching thread reads. Set before the handler is installed.
int interrupt_pipe[2] = {-1, -1};

void note_interrupt(int)
{
    const int before = errno;
    const char note = 0;
    [[maybe_unused]] const ssize_t written = ::write(interrupt_pipe[1], &note, 1);
    errno = before;
}

void handle_interrupt()
{
    std::vector<PHANDLER_ROUTINE> handlers;
    {
        const test_bench::Unseen_lock guard(console().lock);
        test_bench::take_over(&console());
        if (console().ignored) {
            return;
        }
        handlers = console().handlers;
    }
    if (std::any_of(handlers.rbegin(), handlers.rend(), [](auto handler) { return handler(CTRL_C_EVENT) != FALSE; })) {
        return;
    }
    std::signal(SIGINT, SIG_DFL);
    ::kill(::getpid(), SIGINT);
}

void watch_interrupts()
{
    if (::pipe2(interrupt_pipe, O_CLOEXEC) != 0) {
        return;
    }
    std::thread([] {
        char note = 0;
        while (::read(interrupt_pipe[0], &note, 1) == 1 || errno == EINTR) {
            handle_interrupt();
        }
    }).detach();
    struct sigaction action {};
    action.sa_handler = note_interrupt;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
}

}  // namespace

BOOL SetConsoleCtrlHandler(PHANDLER_ROUTINE handler, BOOL add)
{
    if (handler_call.refused()) {
        return FALSE;
    }
    std::call_once(console().watched, watch_interrupts);
    const test_bench::Unseen_lock guard(console().lock);
    test_bench::hand_over(&console());
    if (handler == nullptr) {
        console().ignored = add != FALSE;
        return TRUE;
    }
    auto& handlers = console().handlers;
    if (add != FALSE) {
        handlers.push_back(handler);
        return TRUE;
    }
    const auto found = std::find(handlers.rbegin(), handlers.rend(), handler);
    if (found == handlers.rend()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    handlers.erase(std::next(found).base());
    return TRUE;
}
