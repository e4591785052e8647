#include "status_text.h"

#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <regex>

#include "log_files.h"
#include "vyra/status_text.h"

namespace tool_tests {
namespace {

using vyra_tool::status_text;

// Every constant of status.h with its name.
std::map<int, std::string> constants()
{
    std::ifstream stream(STATUS_HEADER);
    std::map<int, std::string> found;
    const std::regex constant("^ +(VYRA_[A-Z_]+) = ([0-9]+),?$");
    std::smatch parts;
    for (std::string line; std::getline(stream, line);) {
        if (std::regex_match(line, parts, constant)) {
            found[std::stoi(parts[2])] = parts[1];
        }
    }
    return found;
}

TEST(Status_text_test, every_constant_has_its_row_and_no_other_is_there)
{
    std::map<int, std::string> rows;
    for (std::size_t i = 0; const VyraStatusText* text = VyraStatusTextAt(i); ++i) {
        EXPECT_TRUE(rows.emplace(text->status, text->name).second) << text->name;
        for (const char* each : {text->meaning, text->host, text->person}) {
            // std::regex, because GoogleTest's own expressions know no sets on Windows.
            EXPECT_TRUE(std::regex_match(each, std::regex("[a-z].*[a-z0-9)]"))) << text->name << ": " << each;
        }
        EXPECT_EQ(VyraStatusTextOf(text->status), text);
    }
    EXPECT_EQ(rows.size(), 17U);
    EXPECT_EQ(rows, constants());
}

TEST(Status_text_test, advice_that_names_the_log_says_where_it_is)
{
    const std::string place = vyra_tool::library_log_path();
    EXPECT_THAT(status_text(VYRA_INTERNAL).advice, ::testing::HasSubstr(place));
    for (std::size_t i = 0; const VyraStatusText* text = VyraStatusTextAt(i); ++i) {
        const std::string advice = status_text(text->status).advice;
        if (std::regex_search(advice, std::regex("\\blog\\b"))) {
            EXPECT_THAT(advice, ::testing::HasSubstr(place)) << text->name;
        }
    }
}

TEST(Status_text_test, retry_is_told_apart)
{
    EXPECT_EQ(VyraStatusTextOf(VYRA_VIDEO_TIMEOUT)->retry, VYRA_RETRY_SOON);
    EXPECT_EQ(VyraStatusTextOf(VYRA_DEVICE_UNAVAIL)->retry, VYRA_RETRY_AFTER);
    EXPECT_EQ(VyraStatusTextOf(VYRA_CAPTURE_CONFIG)->retry, VYRA_RETRY_NEVER);
    EXPECT_EQ(status_text(VYRA_DEVICE_TIMEOUT).retry, "soon");
}

TEST(Status_text_test, a_drivers_own_result_is_named_as_such)
{
    EXPECT_EQ(status_text(7).name, "driver result 7");
    EXPECT_EQ(status_text(19).name, "driver result 19");
}

TEST(Status_text_test, other_codes_are_unknown)
{
    for (const int code : {-1, 9002, 9107, 9999}) {
        EXPECT_EQ(status_text(code).name, "unknown status") << code;
    }
}

}  // namespace
}  // namespace tool_tests
