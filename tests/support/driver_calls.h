// The driver calls that the simulator has recorded, as tests read them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace test_support {

// Whole, as "QXDR_StartCapture(driver_handle=0x51000010) = 0".
std::string call_text(std::size_t index);
std::vector<std::string> call_texts();

// As "QXDR_StartCapture".
std::vector<std::string> call_names();

}  // namespace test_support
