// The wait for a change of the scanners' state.
#include "manager_test.h"

#include <atomic>
#include <memory>

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class Get_status_test : public Manager_test {
protected:
    static void send_event(std::int32_t event, const char* scanner)
    {
        brenvozulta_sim_send_event(event, brenvozulta_sim_handle(scanner));
        EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    }
};

}  // namespace

TEST_F(Get_status_test, unknown_handle_is_0_at_once_without_a_line)
{
    open_scanners(1);
    for (const std::uint32_t handle : {1U, 8U, 0x80000000U, VYRA_NO_HANDLE}) {
        EXPECT_EQ(VyraGetStatus(handle), VYRA_OK);
    }
}

TEST_F(Get_status_test, unknown_handle_consumes_no_change)
{
    open_scanners(1);
    access::raise_status_change();
    EXPECT_EQ(VyraGetStatus(1), VYRA_OK);
    EXPECT_EQ(VyraGetStatus(0), VYRA_OK) << "returns for the change";
}

TEST_F(Get_status_test, entry_without_a_device_is_0_at_once_without_a_line)
{
    initialize();
    access::store_device(0, nullptr);
    EXPECT_EQ(VyraGetStatus(0), VYRA_OK);
}

TEST_F(Get_status_test, suspended_is_9110)
{
    open_scanners(1);
    access::set_suspended(true);
    EXPECT_EQ(VyraGetStatus(0), VYRA_SCN_UNAVAILABLE);
    EXPECT_EQ(VyraGetStatus(5), VYRA_SCN_UNAVAILABLE);
    const auto line = error_line("get_status", VYRA_SCN_UNAVAILABLE);
    EXPECT_THAT(take_log(), ElementsAre(line, line));
}

TEST_F(Get_status_test, blocks_until_the_scanner_is_closed)
{
    open_scanners(1);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    expect_still_waiting(waiter);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status_test, blocks_until_another_scanner_is_closed)
{
    open_scanners(2);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    EXPECT_EQ(VyraCloseDevice_N(1), VYRA_OK);
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status_test, blocks_until_the_scanner_is_unplugged_and_is_9005_then)
{
    open_scanners(1);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    send_event(2, scanner_1);
    EXPECT_EQ(waiter.result(), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(take_log(), joined({unplug_lines(), {error_line("get_status", VYRA_DEVICE_UNAVAIL)}}));
}

TEST_F(Get_status_test, is_0_for_a_scanner_when_another_is_unplugged)
{
    open_scanners(2);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    send_event(2, scanner_2);
    EXPECT_EQ(waiter.result(), VYRA_OK);
    EXPECT_EQ(take_log(), unplug_lines());
}

TEST_F(Get_status_test, blocks_until_the_scanner_is_plugged_in_again)
{
    open_scanners(1);
    send_event(2, scanner_1);
    EXPECT_EQ(VyraGetStatus(0), VYRA_DEVICE_UNAVAIL);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    send_event(1, scanner_1);
    EXPECT_EQ(waiter.result(), VYRA_OK);
    EXPECT_EQ(take_log(), joined({unplug_lines(), {error_line("get_status", 9005)}, plug_lines()}));
}

TEST_F(Get_status_test, is_9005_at_every_change_while_the_scanner_is_away)
{
    open_scanners(1);
    send_event(2, scanner_1);
    for (int change = 0; change < 3; ++change) {
        access::raise_status_change();
        EXPECT_EQ(VyraGetStatus(0), VYRA_DEVICE_UNAVAIL);
    }
    EXPECT_EQ(
        take_log(),
        joined({unplug_lines(),
                {error_line("get_status", 9005), error_line("get_status", 9005), error_line("get_status", 9005)}}));
}

TEST_F(Get_status_test, blocks_until_the_system_sleeps)
{
    open_scanners(1);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    access::manager().ManagePowerEvent(true);
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status_test, a_plug_of_a_scanner_that_is_not_open_changes_nothing)
{
    open_scanners(1);
    brenvozulta_sim_attach(scanner_2);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    send_event(1, scanner_2);
    send_event(2, scanner_2);
    expect_still_waiting(waiter);
    access::raise_status_change();
    EXPECT_EQ(waiter.result(), VYRA_OK);
    EXPECT_EQ(take_log(), joined({plug_lines(), unplug_lines()}));
}

TEST_F(Get_status_test, resume_changes_nothing)
{
    open_scanners(1);
    access::manager().ManagePowerEvent(true);
    access::forget_status_change();
    access::manager().ManagePowerEvent(false);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    access::manager().ManagePowerEvent(false);
    expect_still_waiting(waiter);
    access::raise_status_change();
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status_test, sleep_without_an_open_scanner_raises_nothing)
{
    initialize();
    access::manager().ManagePowerEvent(true);
    access::manager().ManagePowerEvent(false);
    EXPECT_EQ(open(), 0U);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    expect_still_waiting(waiter);
    access::raise_status_change();
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status_test, one_change_releases_one_waiter)
{
    open_scanners(2);
    constexpr std::size_t waiter_count = 3;
    std::vector<std::unique_ptr<Status_waiter>> waiters;
    for (std::size_t i = 0; i < waiter_count; ++i) {
        waiters.push_back(std::make_unique<Status_waiter>(0));
    }
    ASSERT_TRUE(waiters_inside(0, waiter_count));
    const auto returned = [&] {
        return std::count_if(waiters.begin(), waiters.end(), [](const auto& waiter) { return waiter->has_returned(); });
    };
    for (std::ptrdiff_t change = 1; change <= static_cast<std::ptrdiff_t>(waiter_count); ++change) {
        access::raise_status_change();
        EXPECT_TRUE(becomes_true([&] { return returned() >= change; }));
        for (const auto& waiter : waiters) {
            if (!waiter->has_returned()) {
                expect_still_waiting(*waiter);
            }
        }
        EXPECT_EQ(returned(), change);
    }
}

TEST_F(Get_status_test, a_change_nobody_waited_for_is_kept_across_close_and_open_and_counts_once)
{
    open_scanners(1);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(open(), 0U);
    EXPECT_EQ(VyraGetStatus(0), VYRA_OK);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    expect_still_waiting(waiter);
    access::raise_status_change();
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status_test, changes_nobody_waited_for_are_one)
{
    open_scanners(1);
    access::raise_status_change();
    access::raise_status_change();
    EXPECT_EQ(VyraGetStatus(0), VYRA_OK);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    expect_still_waiting(waiter);
    access::raise_status_change();
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status_test, a_kept_change_survives_terminate_and_initialize)
{
    initialize();
    access::raise_status_change();
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    initialize();
    EXPECT_EQ(open(), 0U);
    EXPECT_EQ(VyraGetStatus(0), VYRA_OK);
}

// Handle 1 is dropped with the table, not closed: nothing but the end of the session wakes its waiters.
TEST_F(Get_status_test, terminate_releases_every_waiter_of_every_scanner)
{
    open_scanners(2);
    std::vector<std::unique_ptr<Status_waiter>> waiters;
    for (std::uint32_t i = 0; i < 8; ++i) {
        waiters.push_back(std::make_unique<Status_waiter>(i % 2));
    }
    ASSERT_TRUE(waiters_inside(0, 4));
    ASSERT_TRUE(waiters_inside(1, 4));
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    for (const auto& waiter : waiters) {
        EXPECT_EQ(waiter->result(), VYRA_OK);
    }
}

TEST_F(Get_status_test, terminate_that_does_not_release_the_driver_releases_the_waiters)
{
    open_scanners(2);
    Status_waiter waiter_0(0);
    Status_waiter waiter_1(1);
    Status_waiter other_1(1);
    ASSERT_TRUE(waiters_inside(0, 1) && waiters_inside(1, 2));
    brenvozulta_sim_fail("QXDR_Release", driver_internal, 1);
    EXPECT_EQ(VyraTerminate(), VYRA_INTERNAL);
    EXPECT_EQ(waiter_0.result(), VYRA_OK);
    EXPECT_EQ(waiter_1.result(), VYRA_OK);
    EXPECT_EQ(other_1.result(), VYRA_OK);
    EXPECT_THAT(take_log(), ElementsAre(error_line("terminate", 9000)));
}

TEST_F(Get_status_test, a_waiter_of_an_unplugged_scanner_is_9005_when_terminate_releases_it)
{
    open_scanners(2);
    send_event(2, scanner_2);
    access::forget_status_change();
    Status_waiter waiter(1);
    ASSERT_TRUE(waiters_inside(1, 1));
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(waiter.result(), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(take_log(), joined({unplug_lines(), {error_line("get_status", 9005)}}));
}

TEST_F(Get_status_test, waits_without_the_manager_lock)
{
    open_scanners(1);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    EXPECT_EQ(VyraBrenvoZultaSetParameters(0, 1, 2), VYRA_OK);
    const Lock_held_elsewhere busy;
    Status_waiter second(0);
    ASSERT_TRUE(waiters_inside(0, 2)) << "and enters without it";
    access::raise_status_change();
    access::raise_status_change();
    EXPECT_TRUE(becomes_true([&] { return waiter.has_returned() || second.has_returned(); }));
}

TEST_F(Get_status_test, keeps_a_displaced_device_alive)
{
    brenvozulta_sim_attach(scanner_3);
    open_scanners(2);
    Status_waiter waiter(1);
    ASSERT_TRUE(waiters_inside(1, 1));
    access::store_device(1, access::open_devices().look_up(0));
    expect_still_waiting(waiter);
    access::raise_status_change();
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

// Waiters that come at any moment of an end: none is missed, and none touches a device that is gone.
TEST_F(Get_status_test, waiters_that_enter_while_terminate_runs_return)
{
    constexpr int cycles = 150;
    constexpr int waiter_count = 4;
    brenvozulta_sim_attach(scanner_2);
    for (int cycle = 0; cycle < cycles; ++cycle) {
        ASSERT_EQ(VyraInitialize_N(nullptr, 0, 0), VYRA_OK);
        const std::uint32_t first = open();
        const std::uint32_t second = open(scanner_2);
        std::atomic<int> entered{0};
        std::vector<std::future<std::int32_t>> waiters;
        for (int i = 0; i < waiter_count; ++i) {
            waiters.push_back(std::async(std::launch::async, [&entered, handle = i % 2 == 0 ? first : second] {
                ++entered;
                return VyraGetStatus(handle);
            }));
        }
        while (entered < cycle % (waiter_count + 1)) {
            std::this_thread::yield();
        }
        ASSERT_EQ(VyraTerminate(), VYRA_OK);
        for (auto& waiter : waiters) {
            ASSERT_EQ(waiter.wait_for(std::chrono::milliseconds(patience_ms)), std::future_status::ready);
            EXPECT_THAT(waiter.get(), ::testing::AnyOf(VYRA_OK, VYRA_NOT_INITIALIZED));
        }
    }
}
