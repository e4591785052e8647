#include <gtest/gtest.h>
#include <windows.h>

#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

struct Formatted {
    std::string text;
    int length;
};

Formatted format(const char* form, ...)
{
    char buffer[2048];
    std::memset(buffer, '@', sizeof buffer);
    va_list arguments;
    va_start(arguments, form);
    const int length = wvsprintfA(buffer, form, arguments);
    va_end(arguments);
    return {buffer, length};
}

void expect(const Formatted& formatted, const std::string& text)
{
    EXPECT_EQ(formatted.text, text);
    EXPECT_EQ(formatted.length, static_cast<int>(text.size()));
}

TEST(Format_contract_test, integers)
{
    expect(format("%d %i %u", -5, 7, 3000000000U), "-5 7 3000000000");
    expect(format("%ld %lu", INT32_MIN, 4294967295U), "-2147483648 4294967295");
    expect(format("%x %X %lx %lX", 255, 255, 0xABCDEFU, 0xABCDEFU), "ff FF abcdef ABCDEF");
    expect(format("%#x %#X %#x", 255, 255, 0), "0xff 0XFF 0x0");
    expect(format("%hu %hd", 999, -9), "999 -9");
    expect(format("%I64d %I64u %I64x", INT64_C(-1234567890123), UINT64_C(12345678901234), INT64_C(0xabcdef012345)),
           "-1234567890123 12345678901234 abcdef012345");
    expect(format("%I32d|%Id", 5, INT64_C(6000000000)), "5|6000000000");
}

TEST(Format_contract_test, width_and_precision)
{
    expect(format("%5d|%-5d|%05d|%05d", 42, 42, 42, -42), "   42|42   |00042|-0042");
    expect(format("%.4d|%8.4d|%08.4d|%-08d|", 42, -42, 42, 42), "0042|    -042|00000042|42      |");
    expect(format("%3.1d|%.3i|%.3u|%.0d", 55, -5, 6, 0), " 55|-05|006|0");
    expect(format("%2d|%1s", 12345, "abc"), "12345|abc");
    expect(format("Thd %16lu ", 1234), "Thd             1234 ");
    expect(format("%03hu", 7), "007");
}

// Seen under Wine only: Windows documents the prefix and the width, but not together.
TEST(Format_contract_test, the_width_does_not_count_the_prefix)
{
    expect(format("%#08x|%#8x|%-#8x|%#.4x", 255, 255, 255, 255), "0x000000ff|      0xff|0xff      |0x00ff");
}

// Seen under Wine only: the null texts.
TEST(Format_contract_test, texts)
{
    expect(format("%s|%10s|%-10s|%.2s|%010s", "abc", "abc", "abc", "abc", "abc"),
           "abc|       abc|abc       |ab|       abc");
    expect(format("%S %ls %hs %ws %hS", L"wide", L"wide", "narrow", L"wide", "narrow"), "wide wide narrow wide narrow");
    const char* const none = nullptr;
    expect(format("%s|%.3s|%8s", none, none, none), "(null)|(nu|  (null)");
    expect(format("%c%C%5c|%-5c|%hc%lc", 'a', 'b', 'c', 'd', 'e', L'f'), "ab    c|d    |ef");
}

TEST(Format_contract_test, pointers)
{
    expect(format("%p", reinterpret_cast<void*>(std::uintptr_t{0x1234abcd})), "000000001234ABCD");
}

// Seen under Wine only: Windows documents the conversions that there are.
TEST(Format_contract_test, unknown_conversions_stand_as_their_letters)
{
    expect(format("%f|%e|%g|%o|%n|%k"), "f|e|g|o|n|k");
    expect(format("%+d|% d|%*d|%llu|%zu", 5, 6, 7), "+d| d|*d|lu|zu");
    expect(format("%5z|"), "     z|");
}

TEST(Format_contract_test, percent_signs)
{
    expect(format("100%% of %d%%", 5), "100% of 5%");
    expect(format("end %"), "end ");
}

// Seen under Wine only: the limit is documented, what becomes of the rest is not.
TEST(Format_contract_test, text_is_cut_at1023_characters)
{
    const std::string full(1023, 'x');
    EXPECT_EQ(format("%s", full.c_str()).text, full);
    EXPECT_EQ(format("%s", (full + "y").c_str()).text, full);
    EXPECT_EQ(format("%s", std::string(5000, 'x').c_str()).text, full);
    EXPECT_EQ(format((full + "tail").c_str()).text, full);
    EXPECT_EQ(format("%1500d", 5).text.size(), 1023U);
    // A line that is cut loses its line end.
    EXPECT_EQ(format("%s%d\r\n", std::string(1020, 'y').c_str(), 12345).text, std::string(1020, 'y') + "123");
    EXPECT_EQ(format("%s\r\n", std::string(1022, 'y').c_str()).text, std::string(1022, 'y') + "\r");
}

}  // namespace
