// The file says of itself that it is the simulator and not the scanner maker's library.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace simulator_test {
namespace {

TEST(Version_resource_test, says_what_the_file_is)
{
    DWORD ignored = 0;
    std::vector<char> resource(GetFileVersionInfoSizeA("BrenvoZulta_USB.dll", &ignored));
    ASSERT_FALSE(resource.empty());
    ASSERT_TRUE(GetFileVersionInfoA("BrenvoZulta_USB.dll", 0, static_cast<DWORD>(resource.size()), resource.data()));
    const auto value = [&](const std::string& name) {
        void* text = nullptr;
        UINT size = 0;
        return VerQueryValueA(resource.data(), ("\\StringFileInfo\\040904B0\\" + name).c_str(), &text, &size)
                   ? std::string(static_cast<const char*>(text))
                   : "";
    };
    EXPECT_EQ(value("ProductName"), "BrenvoZulta_USB simulator");
    EXPECT_EQ(value("FileDescription"), "Simulated driver library: drives no scanner");
    EXPECT_EQ(value("OriginalFilename"), "BrenvoZulta_USB.dll");
    EXPECT_EQ(value("FileVersion"), "1.0.0");
}

}  // namespace
}  // namespace simulator_test
