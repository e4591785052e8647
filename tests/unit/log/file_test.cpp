// When the log's file is opened, closed and opened again.
#include <filesystem>
#include <fstream>

#include "log/log_file.h"
#include "unit/log/folder_stage.h"
#include "unit/log/log_test.h"

namespace log_tests {
namespace {

using kvs::brenvozulta::log_close;
using kvs::brenvozulta::log_closed;
using ::testing::ElementsAre;

class Log_folder_test : public Log_test {
protected:
    void TearDown() override
    {
        Log_test::TearDown();
        stage.clear_the_way();
    }

    Folder_stage stage;
};

TEST_F(Log_test, file_is_opened_by_the_first_line_and_not_before)
{
    configure(everything);
    EXPECT_FALSE(exists(log_path()));
    EXPECT_EQ(log_descriptor(), log_closed);
    log_printf(3, "x\r\n");
    EXPECT_TRUE(exists(log_path()));
    EXPECT_NE(log_descriptor(), log_closed);
}

TEST_F(Log_test, descriptor_stays_the_same_from_line_to_line)
{
    configure(everything);
    const int first = log_open();
    write_lines(3, "x\r\n");
    EXPECT_NE(first, log_closed);
    EXPECT_EQ(log_open(), first);
}

TEST_F(Log_test, close_forgets_the_descriptor_and_may_be_repeated)
{
    configure(everything);
    log_open();
    log_close();
    EXPECT_EQ(log_descriptor(), log_closed);
    log_close();
    EXPECT_EQ(log_descriptor(), log_closed);
}

TEST_F(Log_test, line_after_terminate_opens_the_file_again_and_appends)
{
    configure(everything);
    log_printf(3, "before\r\n");
    ASSERT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(log_descriptor(), log_closed);
    EXPECT_EQ(VyraTerminate(), VYRA_NOT_INITIALIZED);
    EXPECT_EQ(log_descriptor(), log_closed) << "a refused terminate closes the log as well";
    EXPECT_THAT(test_support::log_messages(),
                ElementsAre("before\r\n", "terminate:    Error=9101: Not Initialized\r\n"));
}

TEST_F(Log_test, file_of_an_earlier_run_is_appended_to)
{
    create_file(log_path(), "earlier\r\n");
    configure(everything);
    log_printf(3, "later\r\n");
    const std::string bytes = file_bytes(log_path());
    EXPECT_EQ(bytes.substr(0, 9), "earlier\r\n");
    EXPECT_EQ(bytes.substr(9 + prefix_size), "later\r\r\n");
}

TEST_F(Log_test, others_may_read_and_write_the_file_meanwhile)
{
    configure(everything);
    log_printf(3, "one\r\n");
    {
        std::ofstream other(log_path(), std::ios::binary | std::ios::app);
        ASSERT_TRUE(other.is_open());
        other << "other\n";
    }
    log_printf(3, "two\r\n");
    const std::string bytes = file_bytes(log_path());
    EXPECT_EQ(bytes.substr(size_on_disk("one\r\n"), 6), "other\n");
    EXPECT_EQ(bytes.substr(size_on_disk("one\r\n") + 6 + prefix_size), "two\r\r\n");
}

TEST_F(Log_folder_test, directory_is_created_with_its_parents)
{
    stage.remove_parents();
    configure(everything);
    EXPECT_EQ(log_write("x\r\n"), written);
    EXPECT_TRUE(std::filesystem::is_directory(log_folder()));
    EXPECT_EQ(file_bytes(log_path()).size(), size_on_disk("x\r\n"));
}

TEST_F(Log_folder_test, directory_is_not_created_while_nothing_is_logged)
{
    stage.remove_parents();
    configure(0);
    log_printf(1, "x\r\n");
    log_printf(3, "x\r\n");
    EXPECT_FALSE(exists(log_folder()));
}

TEST_F(Log_folder_test, line_is_dropped_when_the_directory_cannot_be_created_and_the_next_line_tries_again)
{
    stage.remove_parents();
    stage.put_a_file_in_the_way();
    configure(everything);
    EXPECT_EQ(log_write("lost\r\n"), dropped);
    EXPECT_EQ(log_open(), log_closed);
    log_printf(3, "lost too\r\n");
    EXPECT_EQ(VyraStopVideo(77), VYRA_BAD_SCANNER_IDX) << "the host notices nothing";
    stage.clear_the_way();
    EXPECT_EQ(log_write("kept\r\n"), written);
    EXPECT_THAT(test_support::log_messages(), ElementsAre("kept\r\n"));
}

TEST_F(Log_test, line_is_dropped_when_the_file_cannot_be_opened_and_the_next_line_tries_again)
{
    configure(everything);
    create_file(log_path() + ".other", "");
    std::filesystem::remove(log_path() + ".other");
    std::filesystem::create_directory(log_path());  // no file can be opened by this name
    EXPECT_EQ(log_write("lost\r\n"), dropped);
    EXPECT_EQ(log_descriptor(), log_closed);
    std::filesystem::remove(log_path());
    EXPECT_EQ(log_write("kept\r\n"), written);
    EXPECT_THAT(test_support::log_messages(), ElementsAre("kept\r\n"));
}

}  // namespace
}  // namespace log_tests
