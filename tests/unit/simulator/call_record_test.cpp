#include <thread>

#include "driver_stage.h"

namespace simulator_test {
namespace {

class Call_record_test : public Driver_test {};

TEST_F(Call_record_test, calls_stand_in_order_with_arguments_result_and_thread)
{
    initialize();
    void* handle = open();
    QXDR_SetLeds(handle, 2, 0x163, 1, 7);
    ASSERT_EQ(brenvozulta_sim_call_count(), 3U);
    brenvozulta_sim_call call;
    ASSERT_TRUE(brenvozulta_sim_get_call(2, &call));
    EXPECT_EQ(call.order, 3U);
    EXPECT_STREQ(call.function, "QXDR_SetLeds");
    EXPECT_EQ(call.thread, brenvozulta_sim_thread_id());
    EXPECT_EQ(call.finished, 1);
    EXPECT_EQ(call.result, 0U);
    ASSERT_EQ(call.argument_count, 5U);
    EXPECT_EQ(call.arguments[0], reinterpret_cast<std::uintptr_t>(handle));
    EXPECT_EQ(call.arguments[1], 2U);
    EXPECT_EQ(call.arguments[2], 0x163U);
    EXPECT_EQ(call.arguments[3], 1U);
    EXPECT_EQ(call.arguments[4], 7U);
    EXPECT_FALSE(brenvozulta_sim_get_call(3, &call));
}

TEST_F(Call_record_test, the_text_shows_names_in_quotes_and_the_result)
{
    initialize();
    DriverDeviceInfo info{};
    QXDR_GetDeviceInfoSN("no\tone", &info);
    QXDR_GetDeviceInfoSN(nullptr, nullptr);
    QXDR_SelectCaptureConfig(nullptr, 13);
    EXPECT_EQ(call_text(0), "QXDR_Initialize() = 0");
    EXPECT_THAT(call_text(1), testing::StartsWith("QXDR_GetDeviceInfoSN(name=\"no\tone\", info=0x"));
    EXPECT_THAT(call_text(1), testing::EndsWith(") = 5"));
    EXPECT_EQ(call_text(2), "QXDR_GetDeviceInfoSN(name=null, info=0x0) = 1");
    EXPECT_EQ(call_text(3), "QXDR_SelectCaptureConfig(driver_handle=0x0, config=13) = 10");
    EXPECT_EQ(call_text(4), "");
}

TEST_F(Call_record_test, a_text_is_cut_at_the_capacity_and_its_length_told)
{
    initialize();
    char text[5];
    EXPECT_EQ(brenvozulta_sim_call_text(0, text, sizeof text), 21U);
    EXPECT_STREQ(text, "QXDR");
}

TEST_F(Call_record_test, arguments_are_found_by_name)
{
    initialize();
    QXDR_SetLeds(open(), 1, 30, 1, 0);
    char value[32];
    EXPECT_EQ(brenvozulta_sim_call_argument(2, "pattern", value, sizeof value), 2U);
    EXPECT_STREQ(value, "30");
    EXPECT_EQ(brenvozulta_sim_call_argument(2, "nothing", value, sizeof value), 0U);
    EXPECT_EQ(brenvozulta_sim_call_argument(9, "pattern", value, sizeof value), 0U);
}

TEST_F(Call_record_test, a_call_under_way_is_there_but_not_finished)
{
    ASSERT_TRUE(brenvozulta_sim_block("QXDR_Initialize"));
    std::thread host([] { EXPECT_EQ(QXDR_Initialize(), 0U); });
    ASSERT_TRUE(brenvozulta_sim_wait_blocked("QXDR_Initialize", 1, patience_ms));
    EXPECT_EQ(call_text(0), "QXDR_Initialize()");
    EXPECT_FALSE(brenvozulta_sim_wait_returned("QXDR_Initialize", 1, 0));
    EXPECT_TRUE(brenvozulta_sim_wait_called("QXDR_Initialize", 1, 0));
    ASSERT_TRUE(brenvozulta_sim_unblock("QXDR_Initialize"));
    EXPECT_TRUE(brenvozulta_sim_wait_returned("QXDR_Initialize", 1, patience_ms));
    host.join();
    brenvozulta_sim_call call;
    ASSERT_TRUE(brenvozulta_sim_get_call(0, &call));
    EXPECT_NE(call.thread, brenvozulta_sim_thread_id());
}

TEST_F(Call_record_test, clearing_starts_the_order_and_the_counts_again)
{
    initialize();
    open();
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_OpenDevice"), 1U);
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(brenvozulta_sim_call_count(), 0U);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_OpenDevice"), 0U);
    open();
    brenvozulta_sim_call call;
    ASSERT_TRUE(brenvozulta_sim_get_call(0, &call));
    EXPECT_EQ(call.order, 1U);
}

TEST_F(Call_record_test, a_call_that_was_cleared_while_under_way_is_not_counted_as_returned)
{
    ASSERT_TRUE(brenvozulta_sim_block("QXDR_Initialize"));
    std::thread host([] { QXDR_Initialize(); });
    ASSERT_TRUE(brenvozulta_sim_wait_blocked("QXDR_Initialize", 1, patience_ms));
    brenvozulta_sim_clear_calls();
    ASSERT_TRUE(brenvozulta_sim_unblock("QXDR_Initialize"));
    host.join();
    EXPECT_EQ(brenvozulta_sim_call_count(), 0U);
    EXPECT_FALSE(brenvozulta_sim_wait_returned("QXDR_Initialize", 1, 0));
}

TEST_F(Call_record_test, the_oldest_calls_go_when_there_are_too_many)
{
    for (int i = 0; i < 65'540; ++i) {
        QXDR_Release();
    }
    EXPECT_EQ(brenvozulta_sim_call_count(), 65'536U);
    brenvozulta_sim_call call;
    ASSERT_TRUE(brenvozulta_sim_get_call(0, &call));
    EXPECT_EQ(call.order, 5U);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_Release"), 65'540U);
    EXPECT_TRUE(brenvozulta_sim_wait_returned("QXDR_Release", 65'540, 0));
}

}  // namespace
}  // namespace simulator_test
