#include "support/log_lines.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <fstream>
#include <map>
#include <regex>
#include <sstream>

namespace test_support {

namespace {

// {62AB5D82-FDC1-4DC3-A9DD-070D1D495D97}
constexpr GUID program_data = {0x62AB5D82, 0xFDC1, 0x4DC3, {0xA9, 0xDD, 0x07, 0x0D, 0x1D, 0x49, 0x5D, 0x97}};

}  // namespace

std::string log_folder()
{
    PWSTR wide = nullptr;
    std::string folder;
    if (SHGetKnownFolderPath(program_data, 0, nullptr, &wide) == S_OK) {
        for (const wchar_t* character = wide; *character != 0; ++character) {
            folder += static_cast<char>(*character);
        }
    }
    CoTaskMemFree(wide);
    return folder + "\\Orvane\\Halvern SDK\\";
}

std::string log_path()
{
    return log_folder() + "vyrabrenvozulta.log";
}

std::string previous_log_path()
{
    return log_folder() + "vyrabrenvozulta2.log";
}

std::string file_bytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::vector<std::string> log_messages(std::size_t from)
{
    static const std::regex form(
        "((Mon|Tue|Wed|Thu|Fri|Sat|Sun) (Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 0-3][0-9] "
        "[0-2][0-9]:[0-5][0-9]:[0-6][0-9]\\.[0-9]{3} Thd [ 0-9]{15}[0-9] )");
    constexpr std::size_t prefix = 45;

    std::vector<std::string> messages;
    const std::string bytes = file_bytes(log_path());
    std::size_t start = 0;
    for (std::size_t number = 0; start < bytes.size(); ++number) {
        // On disk every "\n" of a message has a "\r" of its own in front.
        std::size_t end = bytes.find("\r\n", start);
        const bool ended = end != std::string::npos;
        end = ended ? end : bytes.size();
        const std::string line = bytes.substr(start, end - start);
        start = ended ? end + 2 : bytes.size();
        if (number < from) {
            continue;
        }
        if (std::regex_match(line.substr(0, prefix), form)) {
            messages.push_back(line.substr(prefix) + (ended ? "\n" : ""));
        } else {
            ADD_FAILURE() << "not a line of the log: " << line;
        }
    }
    return messages;
}

std::string error_line(const std::string& operation, std::int32_t status)
{
    static const std::map<std::int32_t, std::string> texts = {
        {9000, "Internal VYRA  "}, {9001, "Out of Resource"}, {9005, "Device Unavail "}, {9101, "Not Initialized"},
        {9103, "Buf Too Small  "}, {9105, "Video Stopped  "}, {9106, "Video Timeout  "}, {9108, "Bad Scanner Idx"},
        {9109, "Error 9109"},      {9110, "Error 9110"},
    };
    return error_line(operation, status, texts.at(status));
}

std::string error_line(const std::string& operation, std::int32_t status, const std::string& text)
{
    return operation + ":    Error=" + std::to_string(status) + ": " + text + "\r\n";
}

std::string driver_error_line(const std::string& function, std::uint32_t result)
{
    return "--Error : " + function + " ret = " + std::to_string(static_cast<std::int32_t>(result)) + " \n";
}

void remove_logs()
{
    std::remove(log_path().c_str());
    std::remove(previous_log_path().c_str());
}

}  // namespace test_support
