// Hosts that load and unload the library over and over, on one processor.
#include "lifetime_test.h"

namespace lifetime_tests {
namespace {

constexpr const char* many_rounds = "1300";  // more than Windows has thread-local indexes for a process
constexpr const char* load_rounds =
    "300";  // each load alone costs one of them, which the thread library never gives back
constexpr const char* some_rounds = "100";
constexpr const char* few_rounds = "20";  // where threads that were never stopped take the one processor

class Unloading_test : public ::testing::Test {
protected:
    static void expect_unloaded(const char* use, const char* rounds) { expect(use, rounds, "not loaded\n"); }
    // Threads of its own, and callbacks in the driver's hands, are at work in the library from then on.
    static void expect_kept(const char* use, const char* rounds) { expect(use, rounds, "still loaded\n"); }

private:
    static void expect(const char* use, const char* rounds, const char* out)
    {
        const auto result = run_host("loading_host", {use, rounds}, std::chrono::seconds(240));
        expect_good_end(result);
        EXPECT_EQ(result.out, out);
        EXPECT_EQ(result.err, "");
    }
};

TEST_F(Unloading_test, a_library_that_was_only_loaded_is_unloaded)
{
    expect_unloaded("none", load_rounds);
}

TEST_F(Unloading_test, calls_that_start_nothing_keep_nothing)
{
    expect_unloaded("calls_that_start_nothing", load_rounds);
}

TEST_F(Unloading_test, a_library_that_has_started_the_notifier_stays)
{
    expect_kept("notifier", some_rounds);
}

TEST_F(Unloading_test, a_library_that_was_initialized_stays)
{
    expect_kept("session", some_rounds);
}

TEST_F(Unloading_test, capture_goes_on_round_after_round)
{
    expect_kept("capture", many_rounds);
}

TEST_F(Unloading_test, capture_that_is_not_stopped)
{
    expect_kept("capture_without_stop", some_rounds);
}

TEST_F(Unloading_test, four_starts_and_one_stop)
{
    expect_kept("four_starts_one_stop", few_rounds);
}

TEST_F(Unloading_test, capture_that_is_not_terminated)
{
    expect_kept("capture_without_terminate", some_rounds);
}

}  // namespace
}  // namespace lifetime_tests
