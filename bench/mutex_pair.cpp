#include "mutex_pair.h"

#include <mutex>

#include "scanners.h"
#include "turn.h"

// Beside another thread: a process that has one alone is spared the work.
const Side mutex_pair = {"std::mutex", [] {
                             const Running_video video;
                             std::mutex mutex;
                             return nanoseconds_each([&] {
                                 mutex.lock();
                                 keep(mutex);
                                 mutex.unlock();
                             });
                         }};
