// The table of the files that _sopen has opened.
#pragma once
#include <cstddef>

namespace win32_double {

size_t open_descriptors();

}  // namespace win32_double
