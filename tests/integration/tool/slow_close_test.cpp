// A close for which the library has no time: another call holds it.
#include <future>
#include <memory>
#include <optional>

#include "in_process.h"
#include "interrupt.h"
#include "session.h"
#include "status_watch.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

constexpr std::chrono::milliseconds close_patience{test_support::patience_ms};

class Slow_close_test : public In_process_test {
protected:
    void hold_library()
    {
        ASSERT_EQ(brenvozulta_sim_block("QXDR_GetContainerSize"), 1);
        busy_ = std::async(std::launch::async, [] {
            std::uint32_t size = 0;
            VyraBrenvoZultaGetGlobalParamSize(0, &size);
        });
        ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_GetContainerSize", 1, test_support::patience_ms), 1);
    }

    void release_library()
    {
        ASSERT_EQ(brenvozulta_sim_unblock("QXDR_GetContainerSize"), 1);
        busy_.wait();
    }

    // The library logs it when it has given up after its five seconds.
    static bool close_is_refused()
    {
        return test_support::becomes_true([] {
            return test_support::file_bytes(test_support::log_path()).find("close_device:") != std::string::npos;
        });
    }

private:
    std::future<void> busy_;
};

TEST_F(Slow_close_test, is_tried_again)
{
    const vyra_tool::Library library(VYRA_LOG_ALL);
    std::optional<vyra_tool::Scanner> scanner;
    scanner.emplace(library, BRENVOZULTA_SIM_DEFAULT_SCANNER);
    hold_library();
    const auto closed = std::async(std::launch::async, [&scanner] { scanner.reset(); });
    EXPECT_TRUE(close_is_refused());
    release_library();
    closed.wait();
    EXPECT_EQ(brenvozulta_sim_is_open(BRENVOZULTA_SIM_DEFAULT_SCANNER), 0);
    EXPECT_EQ(take_log(), std::vector<std::string>{test_support::error_line("close_device", VYRA_INTERNAL)});
}

TEST_F(Slow_close_test, ends_a_status_all_the_same)
{
    Background_run run({"status", "--log", "all"});
    ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_SetLeds", 1, test_support::patience_ms), 1);
    hold_library();
    vyra_tool::request_interrupt(std::chrono::seconds(0));
    EXPECT_TRUE(close_is_refused());
    release_library();
    auto result = std::async(std::launch::async, [&run] { return run.finish(); });
    const bool in_time = result.wait_for(close_patience) == std::future_status::ready;
    EXPECT_TRUE(in_time);
    if (!in_time) {
        VyraTerminate();  // releases every wait
    }
    EXPECT_EQ(result.get().code, 1);
    EXPECT_EQ(take_log(), std::vector<std::string>{test_support::error_line("close_device", VYRA_INTERNAL)});
}

TEST_F(Slow_close_test, ends_a_watch_all_the_same)
{
    const vyra_tool::Library library(VYRA_LOG_OFF);
    vyra_tool::Event_queue queue;
    auto watch = std::make_unique<vyra_tool::Status_watch>(library, queue);
    watch->open(BRENVOZULTA_SIM_DEFAULT_SCANNER);
    hold_library();
    vyra_tool::request_interrupt(std::chrono::seconds(0));
    const auto ended = std::async(std::launch::async, [&watch] { watch.reset(); });
    const bool in_time = ended.wait_for(close_patience) == std::future_status::ready;
    EXPECT_TRUE(in_time);
    release_library();
    if (!in_time) {
        VyraTerminate();  // releases every wait
    }
}

}  // namespace
}  // namespace tool_tests
