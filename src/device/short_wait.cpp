#include "device/short_wait.h"

#include <emmintrin.h>
#include <windows.h>

#include <boost/thread/thread.hpp>

#include "lifetime/process.h"

namespace kvs::brenvozulta {

namespace {

// Several times what a copy takes, so that only a thread that lost its processor in the middle of one is slept for.
constexpr boost::chrono::milliseconds longest_copy(2);

// Some microseconds. A yield in between lets that thread have its processor back, where there are fewer of them than
// busy threads.
constexpr unsigned pauses_between_yields = 128;

}  // namespace

bool short_wait::again() noexcept
{
    if (pauses_ == 0) {
        limit_ = boost::chrono::steady_clock::now() + longest_copy;
    }
    if (++pauses_ % pauses_between_yields != 0) {
        _mm_pause();
        return true;
    }
    if (boost::chrono::steady_clock::now() < limit_) {
        boost::this_thread::yield();
        return true;
    }
    pauses_ = pauses_between_yields - 1;  // from now on every pause is a long one
    Sleep(1);
    return !process_is_ending();
}

}  // namespace kvs::brenvozulta
