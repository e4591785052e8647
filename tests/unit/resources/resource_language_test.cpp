// What the resource script says beyond the bytes, which hosts and their tools read from the library's file.
#include <windows.h>

#include <vector>

#include <gtest/gtest.h>

namespace {

TEST(Calibration_resource_test, is_stored_under_language_1036_alone)
{
    std::vector<WORD> languages;
    const auto collect = [](HMODULE, const char*, const char*, WORD language, LONG_PTR list) -> BOOL {
        reinterpret_cast<std::vector<WORD>*>(list)->push_back(language);
        return TRUE;
    };
    EnumResourceLanguagesA(nullptr, "image_raw", MAKEINTRESOURCEA(101), collect,
                           reinterpret_cast<LONG_PTR>(&languages));
    EXPECT_EQ(languages, std::vector<WORD>{1036});
}

TEST(Calibration_resource_test, stands_beside_the_version)
{
    EXPECT_NE(FindResourceA(nullptr, MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(16)), nullptr);
}

}  // namespace
