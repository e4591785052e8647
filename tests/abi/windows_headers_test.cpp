// The header in C++ between two inclusions of the system's.
#undef WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "vyra/vyra.h"

#include <gtest/gtest.h>

#include "abi/windows_headers.h"

namespace {

TEST(Header_test, serves_beside_the_systems_header_in_any_order)
{
    EXPECT_EQ(capabilities_size_with_windows_before(), 56);
    EXPECT_EQ(capabilities_size_with_windows_after(), 56);
    VyraDeviceCapabilities record;
    EXPECT_EQ(VyraBrenvoGetCapabilities(77, 1, &record), VYRA_NOT_INITIALIZED);
}

}  // namespace
