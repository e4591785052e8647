// Files that another program holds.
#include <windows.h>

#include <chrono>
#include <future>
#include <thread>

#include "files.h"
#include "support/waiting.h"
#include "tool_test.h"
#include "wide_text.h"

namespace tool_tests {
namespace {

class Held_file_test : public Tool_test {};

TEST_F(Held_file_test, a_file_that_is_held_for_a_moment_gets_its_name)
{
    auto file = vyra_tool::New_file::begin(path("x"));
    file->write({1, 2});
    const HANDLE held = CreateFileW(vyra_tool::to_wide(path("x.part")).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    const auto released = std::async(std::launch::async, [held] {
        std::this_thread::sleep_for(std::chrono::milliseconds(test_support::moment_ms));
        CloseHandle(held);
    });
    EXPECT_TRUE(file->finish());
    EXPECT_EQ(read_bytes(path("x")), (Bytes{1, 2}));
}

}  // namespace
}  // namespace tool_tests
