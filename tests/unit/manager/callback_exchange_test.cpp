// The host's callback comes and goes while the driver announces scanners.
#include "manager_test.h"
#include "support/log_lines.h"

#include <atomic>

using namespace manager_tests;

namespace {

using Callback_exchange_test = Manager_test;

}  // namespace

// The line in front of each call of the host takes its time: enough for the callback to be another one behind it.
TEST_F(Callback_exchange_test, an_event_uses_the_callback_that_it_found)
{
    initialize(host_callback);
    std::atomic<bool> over{false};
    void* const scanner = brenvozulta_sim_handle(scanner_1);
    std::thread driver([&] {
        while (!over) {
            kvs::brenvozulta::hot_plug_listener(1, scanner);
            kvs::brenvozulta::hot_plug_listener(2, scanner);
        }
    });
    for (int round = 0; round < 100; ++round) {
        ASSERT_EQ(VyraInitialize_N(round % 2 == 0 ? nullptr : host_callback, 3, 0), VYRA_OK);
    }
    over = true;
    driver.join();
    take_host_events();
    // Lines of two threads stand piece by piece among each other.
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    test_support::remove_logs();
}
