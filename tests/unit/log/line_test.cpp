// A line of the log to the byte.
#include <sys/timeb.h>
#include <time.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

#include "unit/log/log_test.h"

namespace log_tests {
namespace {

std::int64_t milliseconds(const __timeb64& time)
{
    return time.time * 1000 + time.millitm;
}

__timeb64 now()
{
    __timeb64 time = {};
    _ftime64(&time);
    return time;
}

// The moment that a timestamp shows, if it lies in the seconds from first to last; else -1.
std::int64_t moment(const std::string& timestamp, const __timeb64& first, const __timeb64& last)
{
    for (__time64_t second = first.time; second <= last.time; ++second) {
        if (timestamp.substr(0, 19) == std::string(_ctime64(&second)).substr(0, 19) && timestamp[19] == '.') {
            return second * 1000 + std::atoi(timestamp.c_str() + 20);
        }
    }
    return -1;
}

std::string thread_piece()
{
    char text[64];
    std::snprintf(text, sizeof text, "Thd %16lu ", static_cast<unsigned long>(GetCurrentThreadId()));
    return text;
}

TEST_F(Log_test, timestamp_is_the_runtimes_text_of_the_moment_with_three_digits_of_milliseconds)
{
    configure(everything);
    const __timeb64 before = now();
    log_printf(3, "x\r\n");
    const __timeb64 after = now();
    const std::string stamp = file_bytes(log_path()).substr(0, 23);
    const std::int64_t shown = moment(stamp, before, after);
    EXPECT_GE(shown, milliseconds(before)) << stamp;
    EXPECT_LE(shown, milliseconds(after)) << stamp;
    EXPECT_EQ(stamp.substr(20).find_first_not_of("0123456789"), std::string::npos) << stamp;
}

TEST_F(Log_test, milliseconds_have_leading_zeros)
{
    configure(everything);
    // Until a line falls into the first hundredth of a second.
    std::string milliseconds = "999";
    for (int tries = 0; tries < 100 && milliseconds >= "010"; ++tries) {
        while (now().millitm >= 5) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        log_printf(3, "x\r\n");
        const std::string bytes = file_bytes(log_path());
        ASSERT_GE(bytes.size(), size_on_disk("x\r\n"));
        milliseconds = bytes.substr(bytes.size() - size_on_disk("x\r\n") + 20, 3);
    }
    EXPECT_LT(milliseconds, "010");
}

TEST_F(Log_test, line_is_timestamp_blank_thread_and_message_with_all_line_feeds_translated_on_disk)
{
    configure(everything);
    log_printf(3, "%s:    Error=%d: %s\r\n", "open_device", 9005, "Device Unavail ");
    const std::string bytes = file_bytes(log_path());
    EXPECT_EQ(bytes.substr(23), " " + thread_piece() + "open_device:    Error=9005: Device Unavail \r\r\n");
}

TEST_F(Log_test, bare_line_feed_stands_as_carriage_return_and_line_feed_on_disk)
{
    configure(everything);
    log_printf(3, "--Error : %s ret = %d \n", "QXDR_StopCapture", 4);
    const std::string bytes = file_bytes(log_path());
    EXPECT_EQ(bytes.substr(23), " " + thread_piece() + "--Error : QXDR_StopCapture ret = 4 \r\n");
}

TEST_F(Log_test, message_without_line_end_gets_none)
{
    configure(everything);
    log_printf(3, "first");
    log_printf(3, "second");
    const std::string bytes = file_bytes(log_path());
    ASSERT_EQ(bytes.size(), size_on_disk("first") + size_on_disk("second"));
    EXPECT_EQ(bytes.substr(prefix_size, 5), "first");
    EXPECT_EQ(bytes.substr(2 * prefix_size + 5), "second");
}

TEST_F(Log_test, every_line_names_the_thread_that_wrote_it)
{
    configure(everything);
    log_printf(3, "mine\r\n");
    std::string other;
    std::thread([&] {
        other = thread_piece();
        log_printf(3, "other\r\n");
    }).join();
    const std::string bytes = file_bytes(log_path());
    ASSERT_NE(other, thread_piece());
    EXPECT_EQ(bytes.substr(24, 21), thread_piece());
    EXPECT_EQ(bytes.substr(size_on_disk("mine\r\n") + 24), other + "other\r\r\n");
}

TEST_F(Log_test, message_of1023_characters_is_whole)
{
    configure(everything);
    log_printf(3, "%s\r\n", std::string(1021, 'x').c_str());
    EXPECT_EQ(file_bytes(log_path()).substr(prefix_size), std::string(1021, 'x') + "\r\r\n");
}

TEST_F(Log_test, message_of1024_characters_loses_its_line_feed)
{
    configure(everything);
    log_printf(3, "%s\r\n", std::string(1022, 'x').c_str());
    EXPECT_EQ(file_bytes(log_path()).substr(prefix_size), std::string(1022, 'x') + "\r");
}

TEST_F(Log_test, longer_message_is_cut_at1023_characters_and_the_next_line_follows_on_the_same_one)
{
    configure(everything);
    log_printf(3, "%s\r\n", std::string(5000, 'x').c_str());
    log_printf(3, "next\r\n");
    const std::string bytes = file_bytes(log_path());
    ASSERT_EQ(bytes.size(), prefix_size + 1023 + size_on_disk("next\r\n"));
    EXPECT_EQ(bytes.substr(prefix_size, 1023), std::string(1023, 'x'));
    EXPECT_EQ(bytes.substr(prefix_size + 1023 + prefix_size), "next\r\r\n");
}

TEST_F(Log_test, text_of_log_write_is_not_a_format)
{
    configure(everything);
    EXPECT_EQ(log_write("100%s%d%%\r\n"), written);
    EXPECT_EQ(file_bytes(log_path()).substr(prefix_size), "100%s%d%%\r\r\n");
}

}  // namespace
}  // namespace log_tests
