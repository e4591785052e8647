#include <gtest/gtest.h>
#include <shlobj.h>
#include <sys/timeb.h>
#include <windows.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <filesystem>
#include <string>

namespace {

struct Converted {
    errno_t result;
    size_t count;
    std::string text;
};

Converted convert(const wchar_t* source, size_t size, size_t count)
{
    char text[32];
    std::memset(text, '@', sizeof text);
    size_t converted = 77;
    const errno_t result = wcstombs_s(&converted, text, size, source, count);
    return {result, converted, text};
}

void expect(const Converted& converted, errno_t result, size_t count, const char* text)
{
    EXPECT_EQ(converted.result, result);
    EXPECT_EQ(converted.count, count);
    EXPECT_EQ(converted.text, text);
}

TEST(Wide_text_contract_test, converts_what_fits)
{
    expect(convert(L"abc", 10, 9), 0, 4, "abc");
    expect(convert(L"abc", 4, 3), 0, 4, "abc");
    expect(convert(L"abc", 4, 10), 0, 4, "abc");
    expect(convert(L"abc", 3, 2), 0, 3, "ab");
    expect(convert(L"", 1, 1), 0, 1, "");
}

TEST(Wide_text_contract_test, text_that_does_not_fit_is_refused_or_cut)
{
    expect(convert(L"abc", 3, 3), ERANGE, 0, "");
    expect(convert(L"abc", 3, 10), ERANGE, 0, "");
    expect(convert(L"abc", 3, _TRUNCATE), STRUNCATE, 3, "ab");
}

// Seen under Wine only: how far the "C" locale reaches is not documented.
TEST(Wide_text_contract_test, only_characters_up_to255_have_a_byte)
{
    expect(convert(L"\u00e9z", 10, 9), 0, 3, "\xe9z");
    expect(convert(L"z\u03b1", 10, 9), EILSEQ, 0, "");
    expect(convert(L"z\u03b1", 10, _TRUNCATE), EILSEQ, 0, "");
}

TEST(Wide_text_contract_test, without_a_buffer_the_size_is_counted)
{
    size_t size = 0;
    EXPECT_EQ(wcstombs_s(&size, nullptr, 0, L"abc", 0), 0);
    EXPECT_EQ(size, 4U);
}

TEST(Time_contract_test, the_day_of_a_time_text_has_two_digits)
{
    std::tm fifth{};
    fifth.tm_year = 126;
    fifth.tm_mon = 0;
    fifth.tm_mday = 5;
    fifth.tm_hour = 9;
    fifth.tm_min = 3;
    fifth.tm_sec = 7;
    const __time64_t time = std::mktime(&fifth);
    EXPECT_STREQ(_ctime64(&time), "Mon Jan 05 09:03:07 2026\n");
}

TEST(Time_contract_test, a_time_before1970_has_no_text)
{
    const __time64_t time = -1;
    EXPECT_EQ(_ctime64(&time), nullptr);
}

TEST(Time_contract_test, the_clock_has_milliseconds)
{
    const std::time_t before = std::time(nullptr);
    struct __timeb64 now {};
    _ftime64(&now);
    EXPECT_GE(now.time, before);
    EXPECT_LE(now.time, std::time(nullptr) + 1);
    EXPECT_LT(now.millitm, 1000);
}

TEST(Known_folder_contract_test, the_application_data_folder_exists_and_has_no_trailing_separator)
{
    PWSTR path = nullptr;
    ASSERT_EQ(SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &path), S_OK);
    ASSERT_NE(path, nullptr);
    const std::filesystem::path folder(path);
    EXPECT_TRUE(std::filesystem::is_directory(folder));
    EXPECT_TRUE(folder.has_filename());
    EXPECT_EQ(convert(path, 32, _TRUNCATE).result == EILSEQ, false);
    CoTaskMemFree(path);
}

TEST(Known_folder_contract_test, an_unknown_folder_fails_without_a_path)
{
    const GUID unknown{1, 2, 3, {}};
    wchar_t untouched = L'x';
    PWSTR path = &untouched;
    EXPECT_TRUE(FAILED(SHGetKnownFolderPath(unknown, 0, nullptr, &path)));
    EXPECT_EQ(path, nullptr);
    CoTaskMemFree(path);
}

}  // namespace
