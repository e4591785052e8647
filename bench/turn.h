// One turn of a piece of work that one thread does.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

// The time that the calling thread has had a processor: what other programs take meanwhile is no cost of the work.
// Where the system counts it too coarsely, the time of day.
std::chrono::nanoseconds thread_time();

// The length of turns: as long as a figure needs, or only to see that everything can be measured.
void hurry();
bool hurried();
std::chrono::nanoseconds turn_length();
std::size_t pieces_of_turn(std::size_t usual);

// Keeps the compiler from doing without a value, or without what was written to memory.
template <class Value>
void keep(Value& value)
{
    __asm__ __volatile__("" : : "g"(&value) : "memory");
}

// Does the work for the length of a turn; nanoseconds for each time.
template <class Work>
double nanoseconds_each(Work work)
{
    for (std::uint64_t count = 1;; count *= 4) {
        const auto begin = thread_time();
        for (std::uint64_t i = 0; i < count; ++i) {
            work();
        }
        const auto took = thread_time() - begin;
        if (took >= turn_length()) {
            return static_cast<double>(took.count()) / static_cast<double>(count);
        }
    }
}

template <class Work>
double microseconds_each(Work work)
{
    return nanoseconds_each(work) / 1000;
}
