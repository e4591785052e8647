// The size limit: rotation into the older generation, and lines too long for it.
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <climits>

#include "log/log_file.h"
#include "unit/log/log_test.h"

namespace log_tests {
namespace {

using kvs::brenvozulta::log_closed;
using kvs::brenvozulta::log_rotate;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint64_t default_limit = 52'428'800;

TEST_F(Log_test, file_rotates_when_a_line_finds_it_exactly_at_the_limit)
{
    configure(everything, 2 * line_size);
    write_lines(2, line);
    EXPECT_FALSE(exists(previous_log_path()));
    write_lines(1, "new\r\n");
    EXPECT_EQ(file_bytes(previous_log_path()).size(), 2U * size_on_disk(line));
    EXPECT_EQ(file_bytes(log_path()).substr(prefix_size), "new\r\r\n");
}

TEST_F(Log_test, file_does_not_rotate_one_byte_below_the_limit)
{
    configure(everything, 2 * line_size + 1);
    write_lines(3, line);
    EXPECT_FALSE(exists(previous_log_path()));
    EXPECT_EQ(file_bytes(log_path()).size(), 3U * size_on_disk(line));
}

TEST_F(Log_test, limit_counts_the_bytes_on_disk_and_not_those_of_the_messages)
{
    const std::int32_t before_translation = 2 * (line_size - 1);
    configure(everything, before_translation + 1);
    write_lines(3, line);
    EXPECT_TRUE(exists(previous_log_path()));
}

TEST_F(Log_test, file_found_at_the_limit_is_rotated_before_the_first_line)
{
    create_file(log_path(), std::string(200, 'o'));
    configure(everything, 200);
    write_lines(1, line);
    EXPECT_EQ(file_bytes(previous_log_path()), std::string(200, 'o'));
    EXPECT_EQ(file_bytes(log_path()).size(), size_on_disk(line));
}

TEST_F(Log_test, file_found_at_or_above_the_limit_is_rotated_by_the_opening_itself)
{
    for (const std::size_t size : {200U, 201U}) {
        configure(everything, 200);
        create_file(log_path(), std::string(size, 'o'));
        EXPECT_NE(log_open(), log_closed);
        EXPECT_EQ(file_bytes(previous_log_path()), std::string(size, 'o'));
        EXPECT_TRUE(exists(log_path()));
        EXPECT_THAT(file_bytes(log_path()), IsEmpty());
    }
}

TEST_F(Log_test, file_found_one_byte_below_the_limit_is_appended_to)
{
    create_file(log_path(), std::string(199, 'o'));
    configure(everything, 200);
    write_lines(1, line);
    EXPECT_FALSE(exists(previous_log_path()));
    EXPECT_EQ(file_bytes(log_path()).size(), 199 + size_on_disk(line));
}

TEST_F(Log_test, older_second_generation_is_deleted_and_no_third_ever_appears)
{
    create_file(previous_log_path(), "oldest");
    configure(everything, line_size);
    write_lines(1, "a\r\n");
    EXPECT_EQ(file_bytes(previous_log_path()), "oldest");
    for (const char* next : {"b\r\n", "c\r\n", "d\r\n"}) {
        const std::string current = file_bytes(log_path());
        write_lines(1, next);
        EXPECT_EQ(file_bytes(previous_log_path()), current);
    }
    EXPECT_THAT(files_in_log_folder(), ElementsAre("vyrabrenvozulta.log", "vyrabrenvozulta2.log"));
    EXPECT_EQ(file_bytes(log_path()).substr(prefix_size), "d\r\r\n");
}

TEST_F(Log_test, rotation_leaves_the_log_open_on_an_empty_file)
{
    configure(everything);
    write_lines(1, line);
    log_rotate(log_folder().c_str());
    EXPECT_NE(log_descriptor(), log_closed);
    EXPECT_TRUE(exists(log_path()));
    EXPECT_THAT(file_bytes(log_path()), IsEmpty());
    EXPECT_EQ(file_bytes(previous_log_path()).size(), size_on_disk(line));
}

TEST_F(Log_test, rotation_of_a_closed_log_moves_the_file_and_opens_it)
{
    create_file(log_path(), "old");
    configure(everything);
    log_rotate(log_folder().c_str());
    EXPECT_NE(log_descriptor(), log_closed);
    EXPECT_EQ(file_bytes(previous_log_path()), "old");
}

TEST_F(Log_test, file_that_a_line_is_written_to_is_not_rotated)
{
    create_file(previous_log_path(), "older");
    configure(everything, line_size);
    write_lines(1, line);
    {
        const auto line_being_written = kvs::brenvozulta::current_log_file();
        const int descriptor = line_being_written->descriptor();
        write_lines(1, line);
        EXPECT_EQ(log_descriptor(), descriptor);
        EXPECT_EQ(file_bytes(previous_log_path()), "older");
        EXPECT_EQ(file_bytes(log_path()).size(), 2 * size_on_disk(line));
    }
    write_lines(1, line);
    EXPECT_EQ(file_bytes(previous_log_path()).size(), 2 * size_on_disk(line));
    EXPECT_EQ(file_bytes(log_path()).size(), size_on_disk(line));
}

// Another host's library has the file open in the same way: the system lets nobody move it.
TEST_F(Log_test, file_that_another_host_has_open_grows_until_that_host_closes_it)
{
    configure(everything, line_size);
    write_lines(1, line);
    const int other_hosts =
        _sopen(log_path().c_str(), _O_RDWR | _O_APPEND | _O_CREAT, _SH_DENYNO, _S_IREAD | _S_IWRITE);
    ASSERT_NE(other_hosts, log_closed);
    write_lines(3, line);
    EXPECT_EQ(file_bytes(log_path()).size(), 4 * size_on_disk(line)) << "no line is lost";
    EXPECT_FALSE(exists(previous_log_path()));
    EXPECT_EQ(_close(other_hosts), 0);
    write_lines(1, line);
    EXPECT_EQ(file_bytes(previous_log_path()).size(), 4 * size_on_disk(line));
    EXPECT_EQ(file_bytes(log_path()).size(), size_on_disk(line));
}

TEST_F(Log_test, close_waits_for_the_line_that_is_being_written)
{
    configure(everything);
    write_lines(1, line);
    auto line_being_written = kvs::brenvozulta::current_log_file();
    kvs::brenvozulta::log_close();
    EXPECT_EQ(log_descriptor(), log_closed);
    EXPECT_EQ(_write(line_being_written->descriptor(), "end", 3), 3) << "its descriptor is still the file's";
}

TEST_F(Log_test, line_as_long_as_the_limit_is_dropped_before_the_file_is_opened)
{
    configure(everything, 10);
    EXPECT_EQ(log_write("12345678\r\n"), dropped);
    EXPECT_EQ(log_write("123456789\r\n"), dropped);
    EXPECT_THAT(files_in_log_folder(), IsEmpty());
    EXPECT_EQ(log_write("1234567\r\n"), written);
}

TEST_F(Log_test, limit_of_one_byte_drops_every_line_but_an_empty_one)
{
    configure(everything, 1);
    EXPECT_EQ(log_write("x"), dropped);
    EXPECT_EQ(log_write(""), written);
    EXPECT_EQ(file_bytes(log_path()).size(), prefix_size);
}

class Default_limit_test : public Log_test, public ::testing::WithParamInterface<std::int32_t> {};

TEST_P(Default_limit_test, file_below50_mebibytes_is_appended_to)
{
    create_file_of_size(log_path(), default_limit - 1);
    configure(everything, GetParam());
    write_lines(1, line);
    EXPECT_FALSE(exists(previous_log_path()));
}

TEST_P(Default_limit_test, file_of50_mebibytes_is_rotated)
{
    create_file_of_size(log_path(), default_limit);
    configure(everything, GetParam());
    write_lines(1, line);
    EXPECT_TRUE(exists(previous_log_path()));
    EXPECT_EQ(file_bytes(log_path()).size(), size_on_disk(line));
}

INSTANTIATE_TEST_SUITE_P(Zero_and_negative, Default_limit_test, ::testing::Values(0, -1, INT_MIN));

TEST_F(Log_test, limit_may_be_larger_than_the_default)
{
    create_file_of_size(log_path(), default_limit);
    configure(everything, static_cast<std::int32_t>(default_limit) + 1);
    write_lines(1, line);
    EXPECT_FALSE(exists(previous_log_path()));
}

}  // namespace
}  // namespace log_tests
