#include "support/child_process.h"

#include <gtest/gtest.h>

namespace test_support {
namespace {

TEST(Child_process_test, a_report_of_each_sanitizer_is_seen)
{
    for (const char* report :
         {"==7==ERROR: AddressSanitizer: heap-use-after-free on address 0x602000000010\n",
          "==7==ERROR: LeakSanitizer: detected memory leaks\n", "WARNING: ThreadSanitizer: data race (pid=7)\n",
          "/a/b.cpp:3:5: runtime error: signed integer overflow: 2147483647 + 1\n"}) {
        EXPECT_TRUE(has_sanitizer_report("vyra: cannot open the scanner\n" + std::string(report)));
    }
    EXPECT_FALSE(has_sanitizer_report("vyra: cannot open the scanner: 9110\n"));
}

}  // namespace
}  // namespace test_support
