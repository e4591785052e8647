// The diagnostic log as the tests read it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace test_support {

// Where the library writes. The folder lies in the system's (natively: the double's) application-data folder.
std::string log_folder();
std::string log_path();
std::string previous_log_path();

// Bytes of a file as they stand on disk; empty when there is none.
std::string file_bytes(const std::string& path);

// The messages of the log file in order, without the first ones that a test knows already, with their own line ends
// ("...\r\n" or "...\n"), without timestamp and thread. Fails the test when a line does not have the log's form.
std::vector<std::string> log_messages(std::size_t from = 0);

// An operation's error line with the text of its status as hosts know it, or with another text.
std::string error_line(const std::string& operation, std::int32_t status);
std::string error_line(const std::string& operation, std::int32_t status, const std::string& text);

// The line of a failed driver call: "--Error : QXDR_StopCapture ret = 9 \n".
std::string driver_error_line(const std::string& function, std::uint32_t result);

// Ends the library's use of the log file as far as it can be ended from outside, and removes both generations. The
// library must have closed the file.
void remove_logs();

}  // namespace test_support
