// The memory that the process has.
#pragma once

#include <cstddef>

std::size_t resident_bytes();

// Lets the process find its pages of a file anew, as if it had not touched them yet. False where the system cannot.
bool forget_pages(const void* begin, std::size_t size);
