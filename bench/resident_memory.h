// The memory that the process has.
#pragma once

#include <cstddef>

std::size_t resident_bytes();
