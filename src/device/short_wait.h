// Waiting for what is nearly there.
#pragma once

#include <boost/chrono/system_clocks.hpp>

namespace kvs::brenvozulta {

// The pauses of a thread that waits for what takes no longer than an image's copy. To be put to sleep and woken by the
// system would cost a host more than that, so the thread tries again for a while before it sleeps:
//
//   for (short_wait wait; !reached() && wait.again();) {
//   }
class short_wait {
public:
    // Pauses. False once the process ends, when no thread is left to do what is waited for.
    bool again() noexcept;

private:
    unsigned pauses_ = 0;
    boost::chrono::steady_clock::time_point limit_;  // of trying again
};

}  // namespace kvs::brenvozulta
