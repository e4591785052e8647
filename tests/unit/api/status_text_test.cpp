// The texts of the status codes.
#include <climits>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "status/error_text.h"

namespace {

using kvs::brenvozulta::vyra_error_text;

const std::vector<std::pair<std::int32_t, std::string>> table = {
    {9000, "Internal VYRA  "}, {9001, "Out of Resource"}, {9002, "Adapter Access "}, {9003, "Adapter Mapping"},
    {9004, "Bus Reset      "}, {9005, "Device Unavail "}, {9006, "Wait Object    "}, {9007, "Bad Channel    "},
    {9008, "Isoch Request  "}, {9009, "Video Rcvr     "}, {9010, "Async Read     "}, {9011, "Async Write    "},
    {9012, "CSR Address    "}, {9013, "CSR Write      "}, {9014, "Invalid Rsp    "}, {9015, "Failure Rsp    "},
    {9016, "Device Timeout "}, {9017, "Bad Pipe       "}, {9018, "XCTRL Abort    "}, {9100, "User Error     "},
    {9101, "Not Initialized"}, {9102, "Buf Too Big    "}, {9103, "Buf Too Small  "}, {9104, "Too Many Frames"},
    {9105, "Video Stopped  "}, {9106, "Video Timeout  "}, {9107, "Terminated     "}, {9108, "Bad Scanner Idx"},
};

TEST(Status_text_test, every_code_of_both_runs_has_its_text_of15_characters_with_trailing_blanks)
{
    for (const auto& [code, text] : table) {
        EXPECT_EQ(text.size(), 15U);
        EXPECT_EQ(vyra_error_text(code), text) << code;
    }
}

TEST(Status_text_test, every_other_code_around_the_runs_is_shown_as_its_number)
{
    for (std::int32_t code = 8900; code <= 9300; ++code) {
        const bool listed = (code >= 9000 && code <= 9018) || (code >= 9100 && code <= 9108);
        if (!listed) {
            EXPECT_EQ(vyra_error_text(code), "Error " + std::to_string(code));
        }
    }
}

TEST(Status_text_test, first_run_ends_at9018)
{
    EXPECT_STREQ(vyra_error_text(9018), "XCTRL Abort    ");
    EXPECT_STREQ(vyra_error_text(9019), "Error 9019");
}

TEST(Status_text_test, second_run_ends_at9108_although_two_texts_follow_in_storage)
{
    EXPECT_STREQ(vyra_error_text(9108), "Bad Scanner Idx");
    EXPECT_STREQ(vyra_error_text(9109), "Error 9109");
    EXPECT_STREQ(vyra_error_text(9110), "Error 9110");
    EXPECT_STREQ(vyra_error_text(9111), "Error 9111");
}

TEST(Status_text_test, two_texts_that_are_never_returned_follow_the_second_run)
{
    const char* const last = vyra_error_text(9108);
    EXPECT_STREQ(last + 16, "Bad Parameter  ");
    EXPECT_STREQ(last + 32, "Device Unavail ");
}

TEST(Status_text_test, texts_lie_in_slots_of16_bytes)
{
    for (std::size_t i = 1; i < table.size(); ++i) {
        if (table[i].first == table[i - 1].first + 1) {
            EXPECT_EQ(vyra_error_text(table[i].first) - vyra_error_text(table[i - 1].first), 16);
        }
    }
}

TEST(Status_text_test, codes_below_the_runs_and_negative_ones_are_shown_as_their_number)
{
    EXPECT_STREQ(vyra_error_text(8999), "Error 8999");
    EXPECT_STREQ(vyra_error_text(9099), "Error 9099");
    EXPECT_STREQ(vyra_error_text(0), "Error 0");
    EXPECT_STREQ(vyra_error_text(-1), "Error -1");
    EXPECT_STREQ(vyra_error_text(INT_MAX), "Error 2147483647");
    EXPECT_STREQ(vyra_error_text(INT_MIN), "Error -2147483648");
}

// Two in one expression, as a line of the log may have them.
TEST(Status_text_test, text_of_an_unlisted_code_belongs_to_the_expression_that_asked_for_it)
{
    const auto both = [](const char* one, const char* other) { return std::string(one) + ", " + other; };
    EXPECT_EQ(both(vyra_error_text(9109), vyra_error_text(9110)), "Error 9109, Error 9110");
    EXPECT_EQ(both(vyra_error_text(INT_MIN), vyra_error_text(9000)), "Error -2147483648, Internal VYRA  ");
}

}  // namespace
