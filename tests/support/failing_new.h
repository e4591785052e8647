// The program's operators new and delete: memory that is counted, and that runs out on demand, on one thread.
#pragma once

#include <cstddef>

namespace failing_new {

// Lets the calling thread's n-th allocation from now on fail (n from 1), once.
void fail_allocation(long n);

// Ends the order; tells whether the allocation was refused.
bool stop();

// Allocations of the calling thread since the last order.
long allocations();

// All allocations of the calling thread.
std::size_t allocations_of_this_thread();

}  // namespace failing_new
