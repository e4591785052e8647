// Threads: created, opened, their number, their last error, their sleep, their end.
#include "threads.h"

#include <pthread.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

#include "desktop.h"
#include "entry_point.h"
#include "windows.h"

namespace win32_double {
namespace {

Entry_point create_call{"CreateThread"};
Entry_point open_call{"OpenThread"};
Entry_point sleep_call{"Sleep"};
thread_local DWORD last_error = ERROR_SUCCESS;

struct Thread : Waitable {
    Thread() : Waitable(Kind::thread) {}
    bool signalled() const override { return ended; }

    DWORD number = 0;  // 0 until it runs
    bool ended = false;
};

// The main thread's is gone before the last of its code has run: before static destructors.
thread_local bool own_thread_is_gone = false;

// The calling thread as its handles know it. What is destroyed at the thread's end after this one, its queue and its
// windows among it, has been constructed before: a thread that is started by the double begins with it.
struct Own_thread {
    std::shared_ptr<Thread> object = std::make_shared<Thread>();

    Own_thread() { object->number = GetCurrentThreadId(); }
    ~Own_thread()
    {
        const Desktop_lock lock(desktop().lock);
        abandon_mutexes();
        object->ended = true;
        wake_waits(*object);
        own_thread_is_gone = true;
    }
};

std::shared_ptr<Thread> own_thread()
{
    if (own_thread_is_gone) {
        return std::make_shared<Thread>();
    }
    thread_local Own_thread own;
    return own.object;
}

struct Start {
    LPTHREAD_START_ROUTINE run;
    LPVOID argument;
    std::shared_ptr<Thread> thread;  // once it runs
    std::condition_variable running;
};

void* thread_main(void* argument)
{
    auto* const start = static_cast<Start*>(argument);
    LPTHREAD_START_ROUTINE run = nullptr;
    LPVOID of_caller = nullptr;
    {
        const Desktop_lock lock(desktop().lock);
        run = start->run;
        of_caller = start->argument;
        start->thread = own_thread();
        start->running.notify_all();
    }
    run(of_caller);
    return nullptr;
}

// Under the desktop's lock: the start of a thread is an order that is seen all the same.
bool start_detached(Start& start)
{
    const test_bench::Seen seen;
    pthread_t thread;
    return pthread_create(&thread, nullptr, thread_main, &start) == 0 && pthread_detach(thread) == 0;
}

HANDLE new_thread_handle(const std::shared_ptr<Thread>& thread)
{
    const auto handle = desktop().new_handle<HANDLE>();
    desktop().waitables[handle] = thread;
    return handle;
}

}  // namespace

void watch_thread_end()
{
    own_thread();
}

}  // namespace win32_double

using namespace win32_double;

HANDLE CreateThread(LPSECURITY_ATTRIBUTES security, SIZE_T stack, LPTHREAD_START_ROUTINE run, LPVOID argument,
                    DWORD flags, LPDWORD number)
{
    if (create_call.refused()) {
        return nullptr;
    }
    if (security != nullptr || stack != 0 || flags != 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    Start start{run, argument, nullptr, {}};
    Desktop_lock lock(desktop().lock);
    const HANDLE handle = new_thread_handle(nullptr);  // once the thread runs, nothing may fail
    if (!start_detached(start)) {
        desktop().waitables.erase(handle);
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    start.running.wait(lock, [&] { return start.thread != nullptr; });
    if (number != nullptr) {
        *number = start.thread->number;
    }
    desktop().waitables[handle] = start.thread;
    return handle;
}

// Opens the calling thread, the only one that is ever asked for.
HANDLE OpenThread(DWORD access, BOOL inherit, DWORD number)
{
    if (open_call.refused()) {
        return nullptr;
    }
    if (access != SYNCHRONIZE || inherit || number != GetCurrentThreadId()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const auto own = own_thread();
    const Desktop_lock lock(desktop().lock);
    return new_thread_handle(own);
}

// Unwinds the thread's frames, which Windows leaves as they are: not to be called below one that catches everything.
void ExitThread(DWORD)
{
    pthread_exit(nullptr);
}

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
