// The refusal of an operation.
#pragma once

#include <cstdint>

namespace kvs::brenvozulta {

// Logs the operation's error line and returns the status.
std::int32_t refuse(const char* operation, std::int32_t status);

}  // namespace kvs::brenvozulta
