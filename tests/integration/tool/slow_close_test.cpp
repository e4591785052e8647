// A close for which the library has no time.
#include <future>
#include <memory>

#include "in_process.h"
#include "status_watch.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

class Slow_close_test : public In_process_test {};

TEST_F(Slow_close_test, ends_a_watch_all_the_same)
{
    const vyra_tool::Library library(vyra_tool::log_off);
    vyra_tool::Event_queue queue;
    auto watch = std::make_unique<vyra_tool::Status_watch>(library, queue);
    watch->open(BRENVOZULTA_SIM_DEFAULT_SCANNER);
    ASSERT_EQ(brenvozulta_sim_block("QXDR_GetContainerSize"), 1);
    const auto busy = std::async(std::launch::async, [] {
        std::uint32_t size = 0;
        VyraBrenvoZultaGetGlobalParamSize(0, &size);
    });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_GetContainerSize", 1, test_support::patience_ms), 1);
    const auto ended = std::async(std::launch::async, [&watch] { watch.reset(); });
    const bool in_time =
        ended.wait_for(std::chrono::milliseconds(test_support::patience_ms)) == std::future_status::ready;
    EXPECT_TRUE(in_time);
    ASSERT_EQ(brenvozulta_sim_unblock("QXDR_GetContainerSize"), 1);
    busy.wait();
    if (!in_time) {
        VyraTerminate();  // releases every wait
    }
}

}  // namespace
}  // namespace tool_tests
