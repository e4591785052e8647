// What a call costs that does nothing, alone and beside other threads' calls.
#include <boost/thread/recursive_mutex.hpp>
#include <chrono>
#include <cstdint>
#include <thread>

#include "mutex_pair.h"
#include "scanners.h"
#include "turn.h"
#include "vyra/vyra.h"

namespace {

void call_that_does_nothing()
{
    std::uint32_t handle = some_scanner;
    keep(handle);
    VyraBrenvoZultaSetParameters(handle, 1, 2);
}

double poll_with_nothing_ready()
{
    const Running_video video;
    return nanoseconds_each([] {
        void* buffer = nullptr;
        VyraGetVideoResult(streaming_scanner, &buffer, nullptr);
        keep(buffer);
    });
}

double whole_call()
{
    const Running_video video;
    return nanoseconds_each(call_that_does_nothing);
}

// As an operation takes the manager lock.
void take_and_release(boost::recursive_timed_mutex& lock)
{
    if (!lock.try_lock()) {
        lock.try_lock_for(boost::chrono::seconds(5));
    }
    lock.unlock();
}

const Side bare_lock = {"the bare Boost lock", [] {
                            const Running_video video;
                            boost::recursive_timed_mutex lock;
                            return nanoseconds_each([&] { take_and_release(lock); });
                        }};

// By the clock: what each of the threads gets done is what counts.
template <class Work>
double contended(int threads, Work work)
{
    const std::size_t each = pieces_of_turn(100'000);
    std::vector<std::thread> running;
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < threads; ++i) {
        running.emplace_back([&] {
            for (std::size_t round = 0; round < each; ++round) {
                work();
            }
        });
    }
    for (std::thread& thread : running) {
        thread.join();
    }
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - begin;
    return took.count() / (threads * static_cast<double>(each));
}

Figure contended_call(int threads)
{
    const auto bare_locks = [threads] {
        boost::recursive_timed_mutex lock;
        return contended(threads, [&] { take_and_release(lock); });
    };
    return {"the call from " + std::to_string(threads) + " threads",
            "ns",
            2.0,
            {"", [threads] { return contended(threads, call_that_does_nothing); }},
            bare_lock.name,
            {{bare_lock.name, bare_locks}}};
}

}  // namespace

std::vector<Figure> call_figures()
{
    return {
        {figure_name::poll, "ns", 4.5, {"", poll_with_nothing_ready}, mutex_pair.name, {mutex_pair}},
        {"whole call that does nothing", "ns", 3.2, {"", whole_call}, mutex_pair.name, {mutex_pair, bare_lock}},
        contended_call(2),
        contended_call(4),
    };
}
