#include "notify/device_path.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "device_path_expression.h"

using kvs::brenvozulta::find_usb_identifiers;
using kvs::brenvozulta::Usb_identifiers;

namespace {

constexpr Usb_identifiers expected = {0x1A2B, 0x00FF};

TEST(Device_path_test, identifiers_are_read_from_a_path_without_a_revision)
{
    EXPECT_EQ(find_usb_identifiers("\\\\?\\USB#VID_1A2B&PID_00FF#6&1&0&2#{a5dcbf10}"), expected);
}

TEST(Device_path_test, identifiers_are_read_from_a_path_with_a_revision)
{
    EXPECT_EQ(find_usb_identifiers("\\\\?\\USB#VID_1A2B&PID_00FF&REV_0100#6&1"), expected);
    EXPECT_EQ(find_usb_identifiers("VID_1A2B&PID_00FF&REV_xyz"), expected);
}

TEST(Device_path_test, the_pattern_may_stand_anywhere)
{
    EXPECT_EQ(find_usb_identifiers("VID_1A2B&PID_00FF"), expected);
    EXPECT_EQ(find_usb_identifiers("anything VID_1A2B&PID_00FF0 else"), expected);
    EXPECT_EQ(find_usb_identifiers(std::string_view("\0VID_1A2B&PID_00FF", 18)), expected);
}

TEST(Device_path_test, of_two_matches_the_first_counts)
{
    EXPECT_EQ(find_usb_identifiers("VID_1A2B&PID_00F_VID_1A2B&PID_00FF#VID_0001&PID_0002"), expected);
}

TEST(Device_path_test, the_whole_range_of_identifiers_is_read)
{
    EXPECT_EQ(find_usb_identifiers("VID_0000&PID_FFFF"), (Usb_identifiers{0, 0xFFFF}));
    EXPECT_EQ(find_usb_identifiers("VID_FFFF&PID_0000"), (Usb_identifiers{0xFFFF, 0}));
}

TEST(Device_path_test, lower_case_does_not_match)
{
    EXPECT_EQ(find_usb_identifiers("\\\\?\\usb#vid_1a2b&pid_00ff#6"), std::nullopt);
    EXPECT_EQ(find_usb_identifiers("VID_1a2b&PID_00FF"), std::nullopt);
    EXPECT_EQ(find_usb_identifiers("VID_1A2B&PID_00ff"), std::nullopt);
    EXPECT_EQ(find_usb_identifiers("vid_1A2B&pid_00FF"), std::nullopt);
}

TEST(Device_path_test, other_names_do_not_match)
{
    for (const char* name : {"", "VID_", "VID_1A2B", "VID_1A2B&PID_", "VID_1A2B&PID_00F", "VID_1A2&PID_00FF",
                             "VID_1A2B#PID_00FF", "VID_1A2B5&PID_00FF", "VID_1A2G&PID_00FF", "PID_00FF&VID_1A2B"}) {
        EXPECT_EQ(find_usb_identifiers(name), std::nullopt) << name;
    }
    EXPECT_EQ(find_usb_identifiers({}), std::nullopt);
}

TEST(Device_path_test, a_name_of_64_kib_is_searched_to_its_end)
{
    const std::string match = "VID_1A2B&PID_00FF&REV_0100";
    for (const char* filling : {"x", "VID_", "VID_1A2B&PID_00F", "&REV_0100"}) {
        std::string name;
        while (name.size() < 65536) {
            name += filling;
        }
        EXPECT_EQ(find_usb_identifiers(name), std::nullopt) << filling;
        EXPECT_EQ(find_usb_identifiers(name + match), expected) << filling;
        EXPECT_EQ(find_usb_identifiers(match + name), expected) << filling;
    }
}

// The paths are made of what matters to the expression, whole and broken, always the same ones.
TEST(Device_path_test, the_answer_is_that_of_the_expression_on_every_path)
{
    const std::vector<std::string> pieces = {"VID_",
                                             "V",
                                             "VID",
                                             "_",
                                             "&PID_",
                                             "&",
                                             "PID_",
                                             "&REV_",
                                             "1A2B",
                                             "00FF",
                                             "0",
                                             "F",
                                             "G",
                                             "a",
                                             "vid_",
                                             "#",
                                             "\\",
                                             "\n",
                                             "VVID_",
                                             "\xff",
                                             std::string(1, '\0'),
                                             "VID_1A2B",
                                             "&PID_00FF",
                                             "VID_1A2B&PID_00FF",
                                             "VID_VID_1A2B&PID_00FF"};
    std::mt19937 random(20251121);
    int matches = 0;
    for (int round = 0; round < 4000 && !HasFailure(); ++round) {
        std::string path;
        for (auto count = random() % 9; count != 0; --count) {
            path += pieces[random() % pieces.size()];
        }
        const auto answer = test_support::identifiers_by_expression(path);
        matches += answer ? 1 : 0;
        EXPECT_EQ(find_usb_identifiers(path), answer) << testing::PrintToString(path);
    }
    EXPECT_GT(matches, 400);
}

}  // namespace
