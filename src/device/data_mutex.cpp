#include "device/data_mutex.h"

#include <emmintrin.h>
#include <windows.h>

#include <boost/chrono/duration.hpp>
#include <boost/chrono/system_clocks.hpp>
#include <boost/thread/thread.hpp>

#include "lifetime/process.h"

namespace kvs::brenvozulta {

namespace {

// Several times what a copy takes, so that only a thread that lost its processor in the middle of one is slept for.
constexpr boost::chrono::milliseconds longest_copy(2);

// Some microseconds. A yield in between lets that thread have its processor back, where there are fewer of them than
// busy threads.
constexpr int pauses_between_yields = 128;

}  // namespace

void data_mutex::wait() noexcept
{
    const auto free = [this] { return !held_.load(std::memory_order_relaxed) && try_lock(); };
    const auto limit = boost::chrono::steady_clock::now() + longest_copy;
    do {
        for (int i = 0; i < pauses_between_yields; ++i) {
            if (free()) {
                return;
            }
            _mm_pause();
        }
        boost::this_thread::yield();
    } while (boost::chrono::steady_clock::now() < limit);
    while (!free() && !process_is_ending()) {
        Sleep(1);
    }
}

}  // namespace kvs::brenvozulta
