#include <thread>

#include "driver_stage.h"

namespace simulator_test {
namespace {

class Fault_test : public Driver_test {};

TEST_F(Fault_test, a_result_once_then_the_work_is_done_again)
{
    ASSERT_TRUE(brenvozulta_sim_fail("QXDR_Initialize", 7, 1));
    EXPECT_EQ(QXDR_Initialize(), 7U);
    EXPECT_EQ(QXDR_Release(), 3U) << "the work was done all the same";
    EXPECT_EQ(QXDR_Initialize(), 0U);
}

TEST_F(Fault_test, a_result_n_times_after_some_calls)
{
    initialize();
    const brenvozulta_sim_fault fault{18, 1, 2, 0};
    ASSERT_TRUE(brenvozulta_sim_set_fault("QXDR_OpenDevice", &fault));
    std::vector<std::uint32_t> results;
    void* handle = nullptr;
    for (int i = 0; i < 4; ++i) {
        results.push_back(QXDR_OpenDevice(scanner, &handle));
    }
    EXPECT_THAT(results, testing::ElementsAre(0U, 18U, 18U, 0U));
}

TEST_F(Fault_test, a_result_always_until_it_is_taken_away)
{
    ASSERT_TRUE(brenvozulta_sim_fail("QXDR_Initialize", 200, BRENVOZULTA_SIM_ALWAYS));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(QXDR_Initialize(), 200U);
    }
    ASSERT_TRUE(brenvozulta_sim_fail("QXDR_Initialize", 0, 0));
    EXPECT_EQ(QXDR_Initialize(), 0U);
}

TEST_F(Fault_test, the_work_can_be_carried_out_although_the_call_fails)
{
    const brenvozulta_sim_fault fault{9, 0, 1, 1};
    ASSERT_TRUE(brenvozulta_sim_set_fault("QXDR_Initialize", &fault));
    EXPECT_EQ(QXDR_Initialize(), 9U);
    EXPECT_EQ(QXDR_Release(), 0U);
}

TEST_F(Fault_test, success_can_be_pretended)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_fail("QXDR_OpenDevice", 0, 1));
    void* handle = nullptr;
    EXPECT_EQ(QXDR_OpenDevice("nobody", &handle), 0U);
    EXPECT_EQ(handle, nullptr);
}

TEST_F(Fault_test, unknown_functions_are_refused)
{
    EXPECT_FALSE(brenvozulta_sim_fail("QXDR_Open", 1, 1));
    EXPECT_FALSE(brenvozulta_sim_fail(nullptr, 1, 1));
    EXPECT_FALSE(brenvozulta_sim_set_fault("QXDR_OpenDevice", nullptr));
    EXPECT_FALSE(brenvozulta_sim_block("QXDR_openDevice"));
    EXPECT_FALSE(brenvozulta_sim_wait_called("", 0, 0));
}

TEST_F(Fault_test, a_delayed_call_returns_no_earlier)
{
    ASSERT_TRUE(brenvozulta_sim_set_delay("QXDR_Initialize", 30));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(QXDR_Initialize(), 0U);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
}

TEST_F(Fault_test, a_blocked_call_has_not_done_its_work_until_released)
{
    ASSERT_TRUE(brenvozulta_sim_block("QXDR_Initialize"));
    std::thread host([] { EXPECT_EQ(QXDR_Initialize(), 0U); });
    ASSERT_TRUE(brenvozulta_sim_wait_blocked("QXDR_Initialize", 1, patience_ms));
    EXPECT_EQ(QXDR_Release(), 3U);
    ASSERT_TRUE(brenvozulta_sim_unblock("QXDR_Initialize"));
    host.join();
    EXPECT_EQ(QXDR_Release(), 0U);
}

TEST_F(Fault_test, a_reset_releases_blocked_calls)
{
    ASSERT_TRUE(brenvozulta_sim_block("QXDR_Initialize"));
    std::thread host([] { QXDR_Initialize(); });
    ASSERT_TRUE(brenvozulta_sim_wait_blocked("QXDR_Initialize", 1, patience_ms));
    brenvozulta_sim_reset();
    host.join();
    EXPECT_EQ(QXDR_Release(), 3U) << "the old call reached the new state";
}

TEST_F(Fault_test, faults_of_one_function_leave_the_others_alone)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_fail("QXDR_OpenDevice", 2, BRENVOZULTA_SIM_ALWAYS));
    DriverDeviceInfo info{};
    EXPECT_EQ(QXDR_GetDeviceInfoSN(scanner, &info), 0U);
}

}  // namespace
}  // namespace simulator_test
