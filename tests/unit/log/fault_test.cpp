// The log when the system's functions fail, and what a line costs of them.
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "log/log_file.h"
#include "unit/log/log_test.h"
#include "unit/log/run_at_once.h"
#include "win32_double/control.h"

namespace log_tests {
namespace {

using kvs::brenvozulta::log_closed;
using kvs::brenvozulta::log_directory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using win32_double::calls;

class Log_fault_test : public Log_test {
protected:
    void TearDown() override
    {
        win32_double::clear();
        Log_test::TearDown();
    }
};

TEST_F(Log_fault_test, line_costs_four_writes_and_one_flush)
{
    configure(everything);
    write_lines(1, line);
    win32_double::clear();
    for (std::uint64_t count = 1; count <= 5; ++count) {
        write_lines(1, line);
        EXPECT_EQ(calls("_write"), 4 * count);
        EXPECT_EQ(calls("_commit"), count);
    }
    EXPECT_EQ(calls("_sopen"), 0U);
    EXPECT_EQ(calls("SHGetKnownFolderPath"), 0U) << "the folder is only asked for when a file is opened or rotated";
}

TEST_F(Log_fault_test, disabled_line_is_not_even_formatted)
{
    configure(1);
    win32_double::clear();
    log_printf(3, "%s\r\n", "text");
    EXPECT_EQ(calls("wvsprintfA"), 0U);
    EXPECT_EQ(calls("_sopen"), 0U);
    EXPECT_EQ(calls("SHGetKnownFolderPath"), 0U);
    log_printf(1, "%s\r\n", "text");
    EXPECT_EQ(calls("wvsprintfA"), 1U);
}

TEST_F(Log_fault_test, write_that_fails_is_reported_and_not_flushed)
{
    configure(everything);
    write_lines(1, line);
    win32_double::clear();
    win32_double::fail("_write", 1, ENOSPC, 3);
    EXPECT_EQ(log_write("lost\r\n"), dropped);
    EXPECT_EQ(calls("_commit"), 0U);
    EXPECT_EQ(file_bytes(log_path()).size(), size_on_disk(line) + prefix_size) << "the earlier pieces stay";
}

TEST_F(Log_fault_test, earlier_pieces_that_fail_are_not_missed)
{
    configure(everything);
    write_lines(1, line);
    win32_double::clear();
    win32_double::fail("_write", 3, ENOSPC);
    EXPECT_EQ(log_write("kept\r\n"), written);
    EXPECT_EQ(calls("_commit"), 1U);
    EXPECT_EQ(file_bytes(log_path()).substr(size_on_disk(line)), "kept\r\r\n");
}

TEST_F(Log_fault_test, flush_that_fails_is_not_reported)
{
    configure(everything);
    win32_double::fail("_commit", 1, EIO);
    EXPECT_EQ(log_write(line), written);
}

TEST_F(Log_fault_test, contents_are_lost_when_the_file_cannot_be_moved)
{
    create_file(previous_log_path(), "older");
    configure(everything, line_size);
    write_lines(1, "lost\r\n");
    win32_double::fail("MoveFileA");
    write_lines(1, "kept\r\n");
    EXPECT_THAT(files_in_log_folder(), ElementsAre("vyrabrenvozulta.log"));
    EXPECT_EQ(file_bytes(log_path()).substr(prefix_size), "kept\r\r\n");
}

// Another host has it open. A second try in the same line could not end otherwise.
TEST_F(Log_fault_test, full_file_that_cannot_be_moved_is_tried_once_by_the_line_that_opens_it)
{
    create_file(log_path(), std::string(100, 'o'));
    configure(everything, 100);
    const int other_hosts =
        _sopen(log_path().c_str(), _O_RDWR | _O_APPEND | _O_CREAT, _SH_DENYNO, _S_IREAD | _S_IWRITE);
    win32_double::clear();
    write_lines(1, line);
    EXPECT_EQ(calls("MoveFileA"), 1U);
    EXPECT_EQ(file_bytes(log_path()).size(), 100 + size_on_disk(line)) << "the line is not lost";
    EXPECT_EQ(_close(other_hosts), 0);
}

TEST_F(Log_fault_test, line_is_dropped_when_rotation_cannot_open_the_file_again_and_the_next_line_tries_again)
{
    configure(everything, line_size);
    write_lines(1, line);
    win32_double::fail("_sopen", 1, EACCES);
    EXPECT_EQ(log_write("lost\r\n"), dropped);
    EXPECT_EQ(log_descriptor(), log_closed);
    EXPECT_TRUE(exists(previous_log_path()));
    EXPECT_EQ(log_write("kept\r\n"), written);
    EXPECT_EQ(file_bytes(log_path()).substr(prefix_size), "kept\r\r\n");
}

TEST_F(Log_fault_test, line_is_dropped_when_the_rotation_at_opening_cannot_open_the_file_again)
{
    create_file(log_path(), std::string(100, 'o'));
    configure(everything, 100);
    win32_double::fail("_sopen", 1, EACCES, 1);
    EXPECT_EQ(log_write(line), dropped);
    EXPECT_EQ(log_descriptor(), log_closed);
    EXPECT_EQ(file_bytes(previous_log_path()), std::string(100, 'o'));
}

TEST_F(Log_fault_test, open_is_tried_again_by_every_line)
{
    configure(everything);
    win32_double::clear();
    win32_double::fail("_sopen", 3, EACCES);
    EXPECT_EQ(log_write(line), dropped);
    EXPECT_EQ(log_write(line), dropped);
    EXPECT_EQ(log_write(line), dropped);
    EXPECT_EQ(calls("_sopen"), 3U);
    EXPECT_EQ(log_write(line), written);
}

TEST_F(Log_fault_test, rotation_closes_the_old_descriptor)
{
    configure(everything, line_size);
    for (int i = 0; i < 10; ++i) {
        write_lines(1, line);
    }
    EXPECT_EQ(win32_double::live_objects().descriptors, 1U);
    VyraTerminate();
    EXPECT_EQ(win32_double::live_objects().descriptors, 0U);
}

TEST_F(Log_fault_test, racing_first_lines_leave_one_descriptor_open)
{
    for (int round = 0; round < 20; ++round) {
        configure(everything);
        run_at_once([](int) { log_printf(3, line); });
        EXPECT_EQ(win32_double::live_objects().descriptors, 1U);
    }
}

TEST_F(Log_fault_test, folder_of_the_current_drive_is_used_when_the_system_tells_none)
{
    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path here = win32_double::program_data() + ".here";
    std::filesystem::create_directory(here);
    std::filesystem::current_path(here);
    configure(everything);
    win32_double::fail("SHGetKnownFolderPath");
    EXPECT_EQ(log_write(line), written);
    EXPECT_EQ(file_bytes("\\Orvane\\Halvern SDK\\vyrabrenvozulta.log").size(), size_on_disk(line));
    std::filesystem::current_path(before);
    std::filesystem::remove_all(here);
}

TEST_F(Log_fault_test, directory_is_empty_when_the_folder_or_its_conversion_fails)
{
    EXPECT_EQ(log_directory(), win32_double::program_data());
    win32_double::fail("SHGetKnownFolderPath");
    EXPECT_THAT(log_directory(), IsEmpty());
    win32_double::fail("wcstombs_s", 1, EILSEQ);
    EXPECT_THAT(log_directory(), IsEmpty());
    EXPECT_EQ(log_directory(), win32_double::program_data());
}

}  // namespace
}  // namespace log_tests
