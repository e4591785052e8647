// The stage of the log's tests: the library sets the level and the limit, the files are looked at as bytes.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "log/log.h"
#include "log/log_line.h"
#include "support/log_lines.h"
#include "vyra/vyra.h"

namespace log_tests {

using kvs::brenvozulta::log_printf;
using kvs::brenvozulta::log_write;
using test_support::file_bytes;
using test_support::log_folder;
using test_support::log_path;
using test_support::previous_log_path;

constexpr std::uint32_t everything = 3;
constexpr int written = 0;
constexpr int dropped = -1;

// "Www Mmm dd hh:mm:ss.mmm Thd dddddddddddddddd " stands in front of every message.
constexpr std::size_t prefix_size = 45;

// The bytes that a line with a message of one line feed takes on disk.
std::size_t size_on_disk(const std::string& message);

// A message as short as they come, and its size on disk.
constexpr char line[] = "x\r\n";
inline const auto line_size = static_cast<std::int32_t>(size_on_disk(line));

// Every test starts with neither file and an uninitialized library, and ends so.
class Log_test : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Initializes the library, after terminating what an earlier call initialized.
    void configure(std::uint32_t level, std::int32_t limit = 0);

    // Writes the line as often as the log drops none of them.
    static void write_lines(int count, const char* line);

private:
    bool initialized_ = false;
};

// The descriptor of the process's log file, log_closed when none is open.
int log_descriptor();

// The same after opening it as a line does that is about to be written.
int log_open();

void create_file(const std::string& path, const std::string& bytes);

// A file without contents of its own, however large.
void create_file_of_size(const std::string& path, std::uint64_t size);

bool exists(const std::string& path);

// The files in the log's folder. Natively the folder's path is the start of their names.
std::vector<std::string> files_in_log_folder();

}  // namespace log_tests
