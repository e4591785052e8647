// Folders whose paths reach the bound of the rotation's buffers: 255 characters with the older generation's name.
#include <filesystem>
#include <string>

#include "log/log_file.h"
#include "unit/log/log_test.h"
#include "win32_double/control.h"

namespace log_tests {
namespace {

using kvs::brenvozulta::log_closed;
using ::testing::ElementsAre;

class Log_path_length_test : public Log_test {
protected:
    void TearDown() override
    {
        Log_test::TearDown();
        win32_double::set_program_data(replaced_);
        std::filesystem::remove_all(root_);
    }

    // Lets the path of the older generation have this length.
    void place(std::size_t length)
    {
        const std::size_t behind = previous_log_path().size() - replaced_.size();
        std::string folder = root_ + "/in";
        while (folder.size() + behind < length) {
            folder += folder.size() % 50 == 0 && folder.size() + behind + 1 < length ? "/d" : "d";
        }
        std::filesystem::create_directories(folder);
        win32_double::set_program_data(folder);
        ASSERT_EQ(previous_log_path().size(), length);
    }

private:
    const std::string replaced_ = win32_double::program_data();
    const std::string root_ = replaced_ + ".long";
};

TEST_F(Log_path_length_test, path_of255_characters_rotates)
{
    place(255);
    create_file(log_path(), std::string(100, 'o'));
    configure(everything, 100);
    EXPECT_EQ(log_write("x\r\n"), written);
    EXPECT_EQ(file_bytes(previous_log_path()), std::string(100, 'o'));
}

TEST_F(Log_path_length_test, line_is_dropped_and_nothing_touched_when_the_path_has256_characters)
{
    place(256);
    create_file(log_path(), std::string(100, 'o'));
    configure(everything, 100);
    for (int tries = 0; tries < 2; ++tries) {
        EXPECT_EQ(log_write("x\r\n"), dropped);
        EXPECT_EQ(log_descriptor(), log_closed);
        EXPECT_EQ(win32_double::live_objects().descriptors, 0U);
    }
    EXPECT_THAT(files_in_log_folder(), ElementsAre("vyrabrenvozulta.log"));
    EXPECT_EQ(file_bytes(log_path()), std::string(100, 'o'));
}

TEST_F(Log_path_length_test, long_path_is_no_bar_as_long_as_nothing_rotates)
{
    place(300);
    configure(everything, 1000);
    write_lines(2, "x\r\n");
    EXPECT_EQ(file_bytes(log_path()).size(), 2 * size_on_disk("x\r\n"));
}

TEST_F(Log_path_length_test, running_log_is_closed_when_it_cannot_rotate)
{
    place(300);
    configure(everything, static_cast<std::int32_t>(size_on_disk("x\r\n")));
    write_lines(1, "x\r\n");
    EXPECT_EQ(log_write("x\r\n"), dropped);
    EXPECT_EQ(log_descriptor(), log_closed);
    EXPECT_EQ(file_bytes(log_path()).size(), size_on_disk("x\r\n"));
}

}  // namespace
}  // namespace log_tests
