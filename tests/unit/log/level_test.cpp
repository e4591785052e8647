// Which lines are written.
#include <tuple>

#include "unit/log/log_test.h"

namespace log_tests {
namespace {

using ::testing::Combine;
using ::testing::IsEmpty;
using ::testing::Values;

class Log_level_test : public Log_test, public ::testing::WithParamInterface<std::tuple<std::uint32_t, int>> {};

TEST_P(Log_level_test, line_is_written_up_to_the_level_and_no_level_outside_the_range_writes_any)
{
    const auto [level, message_level] = GetParam();
    configure(level);
    log_printf(message_level, "level\r\n");
    const bool expected = level <= 3 && static_cast<std::uint32_t>(message_level) <= level;
    EXPECT_EQ(file_bytes(log_path()).size(), expected ? size_on_disk("level\r\n") : 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Levels, Log_level_test,
    Combine(Values(0U, 1U, 2U, 3U, 4U, 5U, 100U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFEU, 0xFFFFFFFFU), Values(1, 2, 3)));

class Silent_level_test : public Log_test, public ::testing::WithParamInterface<std::uint32_t> {};

TEST_P(Silent_level_test, no_file_is_created_by_a_cycle_with_failures)
{
    configure(GetParam());
    EXPECT_EQ(VyraStopVideo(77), VYRA_BAD_SCANNER_IDX);
    EXPECT_EQ(VyraInitialize_N(nullptr, GetParam(), 0), VYRA_OK);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(VyraTerminate(), VYRA_NOT_INITIALIZED);
    EXPECT_THAT(files_in_log_folder(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Off, Silent_level_test, Values(0U, 4U, 0x80000000U, 0xFFFFFFFFU));

class Tracing_level_test : public Log_test, public ::testing::WithParamInterface<std::uint32_t> {};

TEST_P(Tracing_level_test, tracing_is_written_and_errors_are_not)
{
    configure(GetParam());
    EXPECT_EQ(VyraStopVideo(77), VYRA_BAD_SCANNER_IDX);
    EXPECT_EQ(VyraInitialize_N(nullptr, GetParam(), 0), VYRA_OK);
    EXPECT_THAT(test_support::log_messages(),
                ::testing::ElementsAre("initialize:    clear current initialized api before the initialize\r\n"));
}

INSTANTIATE_TEST_SUITE_P(Tracing_only, Tracing_level_test, Values(1U, 2U));

TEST_F(Log_test, level_three_writes_errors_and_tracing)
{
    configure(3);
    EXPECT_EQ(VyraStopVideo(77), VYRA_BAD_SCANNER_IDX);
    EXPECT_EQ(VyraInitialize_N(nullptr, 3, 0), VYRA_OK);
    EXPECT_THAT(test_support::log_messages(),
                ::testing::ElementsAre("stop_video:    Error=9108: Bad Scanner Idx\r\n",
                                       "initialize:    clear current initialized api before the initialize\r\n"));
}

TEST_F(Log_test, success_writes_nothing_and_opens_no_file)
{
    configure(everything);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_THAT(files_in_log_folder(), IsEmpty());
}

}  // namespace
}  // namespace log_tests
