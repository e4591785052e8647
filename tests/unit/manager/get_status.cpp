// The wait for a change of the scanners' state.
#include "manager_test.h"

#include <atomic>
#include <memory>

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class Get_status : public Manager_test {
protected:
    static void send_event(std::int32_t event, const char* scanner)
    {
        brenvozulta_sim_send_event(event, brenvozulta_sim_handle(scanner));
        EXPECT_EQ(brenvozulta_sim_wait_events_done(test_support::patience_ms), 1);
    }
};

}  // namespace

TEST_F(Get_status, Unknown_Handle_Is_0_At_Once_Without_A_Line)
{
    open_scanners(1);
    for (const std::uint32_t handle : {1U, 8U, 0x80000000U, VYRA_NO_HANDLE}) {
        EXPECT_EQ(VyraGetStatus(handle), VYRA_OK);
    }
}

TEST_F(Get_status, Unknown_Handle_Consumes_No_Change)
{
    open_scanners(1);
    access::raise_status_change();
    EXPECT_EQ(VyraGetStatus(1), VYRA_OK);
    EXPECT_EQ(VyraGetStatus(0), VYRA_OK) << "returns for the change";
}

TEST_F(Get_status, Entry_Without_A_Device_Is_0_At_Once_Without_A_Line)
{
    initialize();
    access::open_devices().store(0, nullptr);
    EXPECT_EQ(VyraGetStatus(0), VYRA_OK);
}

TEST_F(Get_status, Not_Initialized_Is_9101)
{
    initialize();
    VyraTerminate();
    EXPECT_EQ(VyraGetStatus(0), VYRA_NOT_INITIALIZED);
    EXPECT_THAT(take_log(), ElementsAre(refusal("get_status", VYRA_NOT_INITIALIZED)));
}

TEST_F(Get_status, Suspended_Is_9110)
{
    open_scanners(1);
    access::set_suspended(true);
    EXPECT_EQ(VyraGetStatus(0), VYRA_SCN_UNAVAILABLE);
    EXPECT_EQ(VyraGetStatus(5), VYRA_SCN_UNAVAILABLE);
    const auto line = refusal("get_status", VYRA_SCN_UNAVAILABLE);
    EXPECT_THAT(take_log(), ElementsAre(line, line));
}

TEST_F(Get_status, Blocks_Until_The_Scanner_Is_Closed)
{
    open_scanners(1);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    expect_still_waiting(waiter);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status, Blocks_Until_Another_Scanner_Is_Closed)
{
    open_scanners(2);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    EXPECT_EQ(VyraCloseDevice_N(1), VYRA_OK);
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status, Blocks_Until_The_Scanner_Is_Unplugged_And_Is_9005_Then)
{
    open_scanners(1);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    send_event(2, scanner_1);
    EXPECT_EQ(waiter.result(), VYRA_DEVICE_UNAVAIL);
    EXPECT_THAT(take_log(), ElementsAre("Device UnPlugged\n", "ManageUnplugEvent event\r\n",
                                        refusal("get_status", VYRA_DEVICE_UNAVAIL)));
}

TEST_F(Get_status, Is_0_For_A_Scanner_When_Another_Is_Unplugged)
{
    open_scanners(2);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    send_event(2, scanner_2);
    EXPECT_EQ(waiter.result(), VYRA_OK);
    take_log();
}

TEST_F(Get_status, Blocks_Until_The_Scanner_Is_Plugged_In_Again)
{
    open_scanners(1);
    send_event(2, scanner_1);
    EXPECT_EQ(VyraGetStatus(0), VYRA_DEVICE_UNAVAIL);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    send_event(1, scanner_1);
    EXPECT_EQ(waiter.result(), VYRA_OK);
    take_log();
}

TEST_F(Get_status, Is_9005_At_Every_Change_While_The_Scanner_Is_Away)
{
    open_scanners(1);
    send_event(2, scanner_1);
    for (int change = 0; change < 3; ++change) {
        access::raise_status_change();
        EXPECT_EQ(VyraGetStatus(0), VYRA_DEVICE_UNAVAIL);
    }
    take_log();
}

TEST_F(Get_status, Blocks_Until_The_System_Sleeps)
{
    open_scanners(1);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    access::manager().ManagePowerEvent(true);
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

TEST_F(Get_status, A_Plug_Of_A_Scanner_That_Is_Not_Open_Changes_Nothing)
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
    take_log();
}

TEST_F(Get_status, Resume_Changes_Nothing)
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

TEST_F(Get_status, Sleep_Without_An_Open_Scanner_Raises_Nothing)
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

TEST_F(Get_status, One_Change_Releases_One_Waiter)
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

TEST_F(Get_status, A_Change_Nobody_Waited_For_Is_Kept_Across_Close_And_Open_And_Counts_Once)
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

TEST_F(Get_status, Changes_Nobody_Waited_For_Are_One)
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

TEST_F(Get_status, A_Kept_Change_Survives_Terminate_And_Initialize)
{
    initialize();
    access::raise_status_change();
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    initialize();
    EXPECT_EQ(open(), 0U);
    EXPECT_EQ(VyraGetStatus(0), VYRA_OK);
}

// Handle 1 is dropped with the table, not closed: nothing but the end of the session wakes its waiters.
TEST_F(Get_status, Terminate_Releases_Every_Waiter_Of_Every_Scanner)
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

TEST_F(Get_status, Terminate_That_Does_Not_Release_The_Driver_Releases_The_Waiters)
{
    open_scanners(2);
    Status_waiter waiter_0(0);
    Status_waiter waiter_1(1);
    Status_waiter other_1(1);
    ASSERT_TRUE(waiters_inside(0, 1) && waiters_inside(1, 2));
    brenvozulta_sim_fail("QXDR_Release", 16, 1);
    EXPECT_EQ(VyraTerminate(), VYRA_INTERNAL);
    EXPECT_EQ(waiter_0.result(), VYRA_OK);
    EXPECT_EQ(waiter_1.result(), VYRA_OK);
    EXPECT_EQ(other_1.result(), VYRA_OK);
    take_log();
}

TEST_F(Get_status, A_Waiter_Of_An_Unplugged_Scanner_Is_9005_When_Terminate_Releases_It)
{
    open_scanners(2);
    send_event(2, scanner_2);
    access::forget_status_change();
    Status_waiter waiter(1);
    ASSERT_TRUE(waiters_inside(1, 1));
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(waiter.result(), VYRA_DEVICE_UNAVAIL);
    take_log();
}

TEST_F(Get_status, Waits_Without_The_Manager_Lock)
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

TEST_F(Get_status, Keeps_A_Displaced_Device_Alive)
{
    brenvozulta_sim_attach(scanner_3);
    open_scanners(2);
    Status_waiter waiter(1);
    ASSERT_TRUE(waiters_inside(1, 1));
    access::open_devices().store(1, access::open_devices().look_up(0));
    expect_still_waiting(waiter);
    access::raise_status_change();
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

// Waiters that come at any moment of an end: none is missed, and none touches a device that is gone.
TEST_F(Get_status, Waiters_That_Enter_While_Terminate_Runs_Return)
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
            ASSERT_EQ(waiter.wait_for(std::chrono::milliseconds(test_support::patience_ms)), std::future_status::ready);
            EXPECT_THAT(waiter.get(), ::testing::AnyOf(VYRA_OK, VYRA_NOT_INITIALIZED));
        }
    }
}
