// Closing scanners.
#include "manager_test.h"

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class Close_device_test : public Manager_test {};

}  // namespace

TEST_F(Close_device_test, closes_in_the_driver_removes_the_entry_and_logs_nothing)
{
    open_scanners(2);
    const boost::weak_ptr<kvs::brenvozulta::brenvozulta_device> device = access::open_devices().look_up(0);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(closed_in_driver(), std::vector<void*>{brenvozulta_sim_handle(scanner_1)});
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_CloseDevice"}));
    EXPECT_TRUE(device.expired());
    EXPECT_EQ(access::open_devices().find(0), nullptr);
    EXPECT_NE(access::open_devices().find(1), nullptr);
}

TEST_F(Close_device_test, unknown_handle_is_9108)
{
    open_scanners(1);
    for (const std::uint32_t handle : {1U, 8U, 0x7FFFFFFFU, 0x80000000U, VYRA_NO_HANDLE}) {
        EXPECT_EQ(VyraCloseDevice_N(handle), VYRA_BAD_SCANNER_IDX);
        EXPECT_THAT(take_log(), ElementsAre(error_line("close_device", VYRA_BAD_SCANNER_IDX)));
    }
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_EQ(access::open_devices().size(), 1U);
}

TEST_F(Close_device_test, a_second_close_is_9108)
{
    open_scanners(1);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_BAD_SCANNER_IDX);
    EXPECT_THAT(take_log(), ElementsAre(error_line("close_device", VYRA_BAD_SCANNER_IDX)));
}

TEST_F(Close_device_test, a_close_that_fails_is_still_0_and_removes_the_entry)
{
    open_scanners(1);
    brenvozulta_sim_fail("QXDR_CloseDevice", driver_bad_handle, 1);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_CloseDevice ret = 10 \n", "close_device:    Error=9108\r\n"));
    EXPECT_EQ(access::open_devices().size(), 0U);
    EXPECT_EQ(open(), 0U);
}

TEST_F(Close_device_test, entry_without_a_device_is_0_and_stays)
{
    initialize();
    access::store_device(3, nullptr);
    EXPECT_EQ(VyraCloseDevice_N(3), VYRA_OK);
    EXPECT_NE(access::open_devices().find(3), nullptr);
    EXPECT_EQ(access::open_devices().size(), 1U);
}

TEST_F(Close_device_test, entry_without_a_device_raises_no_status_change)
{
    open_scanners(1);
    access::store_device(3, nullptr);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    EXPECT_EQ(VyraCloseDevice_N(3), VYRA_OK);
    expect_still_waiting(waiter);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(waiter.result(), VYRA_OK);
}

// The waiting host is told before the driver is: a driver that takes its time does not hold it up.
TEST_F(Close_device_test, raises_the_status_change_before_it_closes_in_the_driver)
{
    open_scanners(1);
    Status_waiter waiter(0);
    ASSERT_TRUE(waiters_inside(0, 1));
    brenvozulta_sim_block("QXDR_CloseDevice");
    auto closing = std::async(std::launch::async, [] { return VyraCloseDevice_N(0); });
    EXPECT_EQ(waiter.result(), VYRA_OK);
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_CloseDevice", 1, patience_ms), 1);
    brenvozulta_sim_unblock("QXDR_CloseDevice");
    EXPECT_EQ(closing.get(), VYRA_OK);
}

TEST_F(Close_device_test, works_while_the_system_sleeps)
{
    open_scanners(1);
    access::set_suspended(true);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_CloseDevice"}));
}

TEST_F(Close_device_test, takes_the_close_mutex_inside_the_manager_lock)
{
    open_scanners(1);
    std::future<std::int32_t> closing;
    {
        const boost::unique_lock<kvs::brenvozulta::plain_mutex> held(access::close_mutex());
        closing = std::async(std::launch::async, [] { return VyraCloseDevice_N(0); });
        EXPECT_TRUE(becomes_true([] {
            const boost::unique_lock<kvs::brenvozulta::recursive_timed_mutex> lock(access::lock(), boost::try_to_lock);
            return !lock.owns_lock();
        })) << "the close holds the manager lock";
        EXPECT_NE(closing.wait_for(std::chrono::milliseconds(50)), std::future_status::ready);
        EXPECT_THAT(take_driver_calls(), IsEmpty());
    }
    EXPECT_EQ(closing.get(), VYRA_OK);
}

TEST_F(Close_device_test, does_not_stop_a_running_video)
{
    open_scanners(1);
    brenvozulta_sim_set_idle_stop_result(driver_wrong_state);
    ASSERT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_CloseDevice"}));
}
