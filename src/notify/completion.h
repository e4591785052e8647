// Something that happens once and that threads wait for.
#pragma once

#include <windows.h>

namespace kvs::brenvozulta {

// A thread that waits goes on answering the messages that are sent to its windows: hosts stop the service on the thread
// that has their windows, and a subscriber that sends something there would otherwise wait for the thread that waits
// for it. Messages that were posted stay for the host's own loop.
class completion {
public:
    // Throws boost::thread_resource_error when the system has no event left.
    completion();
    ~completion();
    completion(const completion&) = delete;
    completion& operator=(const completion&) = delete;

    void set();

    // Returns once it is set, however often it is called. Window procedures of the calling thread may run meanwhile,
    // and through them any function of the service: not to be called with a lock held.
    void wait() const;

private:
    HANDLE event_;
};

}  // namespace kvs::brenvozulta
