// Counts what the calling thread allocates with operator new.
#pragma once

#include <cstddef>

namespace test_support {

std::size_t allocations_of_this_thread();

}  // namespace test_support
