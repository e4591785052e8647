// Images need no memory but the host's.
#include <chrono>

#include "sdk/pretended_library.h"
#include "support/failing_new.h"

namespace {

using namespace std::chrono_literals;
using test_support::buffer;
using test_support::pretended;

class Wrapper_memory_test : public test_support::Pretended_library_test {};

TEST_F(Wrapper_memory_test, images_need_no_memory)
{
    vyra::library library(functions_);
    vyra::scanner scanner(library, "scanner");
    vyra::video video(scanner, vyra::mode::flat);
    video.submit(buffer, sizeof buffer);
    const std::size_t before = failing_new::allocations_of_this_thread();
    for (int i = 0; i < 100; ++i) {
        video.submit(*video.wait(1s));
    }
    EXPECT_EQ(failing_new::allocations_of_this_thread(), before);
    EXPECT_EQ(pretended.submitted, 101);
}

}  // namespace
