// Lines of many threads at once. No lock keeps the pieces of a line together, but every piece is whole.
#include <string>

#include "log/log_file.h"
#include "unit/log/log_test.h"
#include "unit/log/run_at_once.h"

namespace log_tests {
namespace {

constexpr int lines_each = 50;

std::string message(int thread, int number)
{
    return "<thread " + std::to_string(thread) + " line " + std::to_string(number) + ">\r\n";
}

std::size_t occurrences(const std::string& text, const std::string& piece)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + piece.size())) {
        ++count;
    }
    return count;
}

TEST_F(Log_test, every_piece_of_every_threads_line_is_whole_and_there_once)
{
    configure(everything);
    log_printf(3, "\r\n");
    run_at_once([](int thread) {
        for (int number = 0; number < lines_each; ++number) {
            log_printf(3, "%s", message(thread, number).c_str());
        }
    });
    const std::string bytes = file_bytes(log_path());
    std::size_t size = size_on_disk("\r\n");
    for (int thread = 0; thread < thread_count; ++thread) {
        for (int number = 0; number < lines_each; ++number) {
            std::string on_disk = message(thread, number);
            on_disk.insert(on_disk.size() - 1, "\r");
            EXPECT_EQ(occurrences(bytes, on_disk), 1U) << on_disk;
            size += size_on_disk(message(thread, number));
        }
    }
    EXPECT_EQ(bytes.size(), size);
    EXPECT_EQ(occurrences(bytes, "Thd "), std::size_t{thread_count} * lines_each + 1);
}

// The first lines race to open the file: every line is in it, whoever opened it.
TEST_F(Log_test, first_lines_of_many_threads_are_all_written)
{
    configure(everything);
    run_at_once([](int thread) { log_printf(3, "%s", message(thread, 0).c_str()); });
    const std::string bytes = file_bytes(log_path());
    for (int thread = 0; thread < thread_count; ++thread) {
        EXPECT_EQ(occurrences(bytes, "<thread " + std::to_string(thread) + " line 0>"), 1U);
    }
}

// Rotations that meet may cost the older generation, and a file that another thread writes to waits for a later line;
// the first quiet line finds everything in order.
TEST_F(Log_test, limit_holds_again_after_many_threads_have_rotated)
{
    constexpr std::size_t limit = 2000;
    configure(everything, static_cast<std::int32_t>(limit));
    run_at_once([](int thread) {
        for (int number = 0; number < lines_each; ++number) {
            log_printf(3, "%s", message(thread, number).c_str());
        }
    });
    write_lines(1, "last\r\n");
    EXPECT_LT(file_bytes(log_path()).size(), limit + size_on_disk("last\r\n"));
    EXPECT_LE(files_in_log_folder().size(), 2U);
}

}  // namespace
}  // namespace log_tests
