// The results of driver calls and the statuses that stand for them.
#pragma once

#include <cstdint>

namespace test_support {

struct Driver_result {
    std::uint32_t result;
    std::int32_t status;
};

// Every failure that a driver may answer, and some that none does.
constexpr Driver_result driver_failures[] = {
    {1, 9109},  {2, 9025},  {3, 9101},  {4, 9005},  {5, 9005},   {6, 9000},   {7, 9109},           {8, 9109},
    {9, 9016},  {10, 9108}, {11, 9000}, {12, 9114}, {13, 9000},  {14, 9109},  {15, 9109},          {16, 9000},
    {17, 9000}, {18, 9000}, {19, 9111}, {20, 9000}, {255, 9000}, {256, 9000}, {0x80000000U, 9000}, {0xFFFFFFFFU, 9000},
};

}  // namespace test_support
