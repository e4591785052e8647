// Waiting for the operating system's objects.
#pragma once

#include <windows.h>

#include <cstddef>
#include <initializer_list>
#include <memory>

#include "locks/annotations.h"

namespace kvs::brenvozulta {

// Owns the handle of an event, a mutex or a thread.
struct Handle_closer {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using handle_owner = std::unique_ptr<void, Handle_closer>;

// Takes over a handle that the system has just given. Throws boost::thread_resource_error when it gave none.
handle_owner own(HANDLE handle);

// Waits, without a limit, until one of the objects is signalled, and returns its place. A mutex is then the calling
// thread's, also one whose owner ended without giving it up.
//
// A thread that waits goes on answering the messages that are sent to its windows: hosts stop the service on the thread
// that has their windows, and a subscriber that sends something there would otherwise wait for the thread that waits
// for it. Messages that were posted stay for the host's own loop. So window procedures of the calling thread may run
// meanwhile, and through them any function of the service: not to be called with a lock held that they may take.
std::size_t wait_for_any(std::initializer_list<HANDLE> objects);

// Something that happens once and that threads wait for.
class completion {
public:
    // Throws boost::thread_resource_error when the system has no event left.
    completion();

    void set() { SetEvent(event_.get()); }

    // Signalled once it is set.
    HANDLE handle() const { return event_.get(); }

private:
    handle_owner event_;
};

// A recursive lock that is held while code of others runs. When its owner ends without giving it up, because that code
// ended the thread or because the process ends, the lock is free: what it guards must be whole at every moment.
class CAPABILITY("lock") dispatch_mutex {
public:
    // Throws boost::thread_resource_error when the system has no mutex left.
    dispatch_mutex();

    void lock() ACQUIRE() { wait_for_any({mutex_.get()}); }
    void unlock() RELEASE() { ReleaseMutex(mutex_.get()); }

private:
    handle_owner mutex_;
};

}  // namespace kvs::brenvozulta
