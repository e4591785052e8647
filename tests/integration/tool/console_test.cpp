// The console is given back as it was.
#include <windows.h>

#include <gtest/gtest.h>

#include "platform.h"

namespace tool_tests {
namespace {

TEST(Console_test, has_its_code_page_again_when_the_tool_has_ended)
{
    FreeConsole();
    ASSERT_TRUE(AllocConsole());
    ASSERT_TRUE(SetConsoleOutputCP(850));
    {
        const vyra_tool::Utf8_console console;
        EXPECT_EQ(GetConsoleOutputCP(), static_cast<UINT>(CP_UTF8));
    }
    EXPECT_EQ(GetConsoleOutputCP(), 850U);
    FreeConsole();
}

}  // namespace
}  // namespace tool_tests
