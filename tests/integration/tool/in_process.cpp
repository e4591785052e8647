#include "in_process.h"

#include <atomic>
#include <chrono>
#include <filesystem>

#include "interrupt.h"
#include "run.h"
#include "support/log_lines.h"

namespace tool_tests {
namespace {

std::string unused_file()
{
    static std::atomic<unsigned> number{0};
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    const auto name = "vyra_output_" + std::to_string(now) + "_" + std::to_string(++number);
    return (std::filesystem::temp_directory_path() / name).string();
}

}  // namespace

void In_process_test::SetUp()
{
    test_support::Scanner_test::SetUp();
    vyra_tool::clear_interrupt();
}

Background_run::Background_run(const std::vector<std::string>& arguments)
    : file_(unused_file()),
      results_(std::fopen(file_.c_str(), "wb")),
      thread_([this, arguments] { code_ = vyra_tool::run(arguments, results_); })
{
}

Background_run::~Background_run()
{
    if (thread_.joinable()) {
        vyra_tool::request_interrupt();
        finish();
    }
}

Result Background_run::finish()
{
    thread_.join();
    std::fclose(results_);
    Result result{code_, test_support::file_bytes(file_), {}};
    std::remove(file_.c_str());
    return result;
}

Result run_in_process(const std::vector<std::string>& arguments)
{
    return Background_run(arguments).finish();
}

Result run_and_listen(const std::vector<std::string>& arguments)
{
    ::testing::internal::CaptureStderr();
    Result result = run_in_process(arguments);
    result.err = ::testing::internal::GetCapturedStderr();
    return result;
}

}  // namespace tool_tests
