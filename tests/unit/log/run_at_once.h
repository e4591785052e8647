// Threads that start their work together.
#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace log_tests {

constexpr int thread_count = 8;

// Runs body(0) to body(thread_count - 1), each on a thread of its own, once all threads are there.
template <class Body>
void run_at_once(Body body)
{
    std::atomic<int> waiting{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < thread_count; ++thread) {
        threads.emplace_back([&, thread] {
            ++waiting;
            while (waiting < thread_count) {
                std::this_thread::yield();
            }
            body(thread);
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

}  // namespace log_tests
