// Bringing the driver down: which scanners are closed, what stays when it is not released.
#include "manager_test.h"

#include "support/log_lines.h"
#include "vyra/notify.h"

using namespace manager_tests;
using kvs::brenvozulta::power_handler;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class Terminate_test : public Manager_test {
protected:
    // The handles, not the numbers, of the scanners with these names.
    static std::vector<void*> driver_handles(const std::vector<std::size_t>& numbers)
    {
        std::vector<void*> handles;
        for (const std::size_t number : numbers) {
            handles.push_back(brenvozulta_sim_handle(scanner_name(number).c_str()));
        }
        return handles;
    }
};

// The log file can be removed only once the library has closed it: under Windows for the system's sake, natively the
// library would go on writing to the removed file.
bool log_is_closed_after(const std::string& last_line)
{
    const Lines before = test_support::log_messages();
    if (before.empty() || before.back() != last_line) {
        return false;
    }
    test_support::remove_logs();
    std::uint32_t* const no_type = nullptr;
    VyraBrenvoZultaGetPortType(0, no_type);
    return test_support::log_messages() == Lines({error_line("get_port_type", VYRA_BAD_PARAMETER)});
}

}  // namespace

TEST_F(Terminate_test, without_initialize_is_9101_and_closes_the_log)
{
    initialize();
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(VyraTerminate(), VYRA_NOT_INITIALIZED);
    EXPECT_TRUE(log_is_closed_after(error_line("terminate", VYRA_NOT_INITIALIZED)));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_port_type", 9109)));
}

TEST_F(Terminate_test, success_closes_the_log_and_logs_nothing)
{
    initialize();
    VyraBrenvoZultaGetPortType(0, nullptr);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_TRUE(log_is_closed_after(error_line("get_port_type", VYRA_BAD_PARAMETER)));
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_port_type", 9109)));
}

TEST_F(Terminate_test, unreleased_driver_is_9000_and_closes_the_log)
{
    initialize();
    brenvozulta_sim_fail("QXDR_Release", 7, 1);
    EXPECT_EQ(VyraTerminate(), VYRA_INTERNAL);
    EXPECT_TRUE(log_is_closed_after(error_line("terminate", VYRA_INTERNAL)));
    EXPECT_THAT(take_log(), ElementsAre(error_line("get_port_type", 9109)));
}

TEST_F(Terminate_test, closes_by_index_while_the_table_shrinks)
{
    const std::vector<std::vector<std::size_t>> closed_of = {{},        {1},       {1},          {1, 2},      {1, 2},
                                                             {1, 2, 3}, {1, 2, 3}, {1, 2, 3, 4}, {1, 2, 3, 4}};
    for (std::size_t number = 2; number <= 8; ++number) {
        brenvozulta_sim_attach(scanner_name(number).c_str());
    }
    for (const std::size_t open_count : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U}) {
        initialize();
        for (std::size_t number = 1; number <= open_count; ++number) {
            ASSERT_EQ(open(scanner_name(number)), number - 1);
        }
        brenvozulta_sim_clear_calls();
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
        EXPECT_EQ(closed_in_driver(), driver_handles(closed_of[open_count])) << open_count << " open";
        EXPECT_EQ(take_driver_calls().back(), "QXDR_Release");
        EXPECT_EQ(access::open_devices().size(), 0U);
        EXPECT_THAT(access::detected_names(), IsEmpty());
        EXPECT_FALSE(access::initialized());
    }
}

TEST_F(Terminate_test, with_only_handle_1_open_closes_nothing_in_the_driver)
{
    open_scanners(2);
    ASSERT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_Release"}));
    EXPECT_THAT(take_log(), ElementsAre(error_line("close_device", VYRA_BAD_SCANNER_IDX)));
    EXPECT_EQ(access::open_devices().size(), 0U);
}

TEST_F(Terminate_test, with_handles_1_and_2_open_closes_handle_1)
{
    open_scanners(3);
    ASSERT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(closed_in_driver(), driver_handles({2}));
    EXPECT_THAT(take_log(), ElementsAre(error_line("close_device", VYRA_BAD_SCANNER_IDX)));
}

TEST_F(Terminate_test, drops_the_devices_before_it_releases_the_driver)
{
    open_scanners(2);
    const boost::weak_ptr<kvs::brenvozulta::brenvozulta_device> second = access::open_devices().look_up(1);
    brenvozulta_sim_block("QXDR_Release");
    auto terminating = std::async(std::launch::async, [] { return VyraTerminate(); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_Release", 1, patience_ms), 1);
    EXPECT_TRUE(second.expired());
    EXPECT_TRUE(access::initialized()) << "until the driver is released";
    EXPECT_NE(wait_for_window(), nullptr) << "until the driver is released";
    brenvozulta_sim_unblock("QXDR_Release");
    EXPECT_EQ(terminating.get(), VYRA_OK);
    EXPECT_FALSE(access::initialized());
}

TEST_F(Terminate_test, ends_the_power_subscription_and_the_notifier)
{
    initialize();
    EXPECT_NE(wait_for_window(), nullptr);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(find_window(), nullptr);
    EXPECT_FALSE(UnsubscribeToPowerEvent(power_handler));
}

TEST_F(Terminate_test, unreleased_driver_leaves_it_initialized_with_its_events)
{
    open_scanners(2);
    for (const std::uint32_t result : {1U, 5U, 19U}) {
        brenvozulta_sim_fail("QXDR_Release", result, 1);
        EXPECT_EQ(VyraTerminate(), VYRA_INTERNAL);
        EXPECT_THAT(take_log(), ElementsAre(error_line("terminate", VYRA_INTERNAL)));
    }
    EXPECT_TRUE(access::initialized());
    EXPECT_EQ(access::open_devices().size(), 0U) << "the scanners are gone all the same";
    EXPECT_THAT(access::detected_names(), IsEmpty());
    EXPECT_NE(wait_for_window(), nullptr);
    EXPECT_EQ(open(), 0U) << "scanners can be opened again";
    EXPECT_TRUE(UnsubscribeToPowerEvent(power_handler));
    EXPECT_EQ(VyraTerminate(), VYRA_OK) << "and the next terminate ends it";
    EXPECT_FALSE(access::initialized());
}

TEST_F(Terminate_test, a_second_cycle_works_like_the_first)
{
    for (int cycle = 0; cycle < 2; ++cycle) {
        initialize(host_callback);
        EXPECT_EQ(take_driver_calls(),
                  Calls({"QXDR_Initialize", "QXDR_GetDevicesList", "QXDR_SetListenerCallbackHotPlug"}));
        EXPECT_EQ(open(), 0U);
        brenvozulta_sim_clear_calls();
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
        EXPECT_EQ(take_driver_calls(), Calls({"QXDR_CloseDevice", "QXDR_Release"}));
    }
}

TEST_F(Terminate_test, a_close_that_fails_does_not_stop_it)
{
    open_scanners(1);
    brenvozulta_sim_fail("QXDR_CloseDevice", driver_timeout, 1);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_CloseDevice", "QXDR_Release"}));
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_CloseDevice ret = 9 \n", "close_device:    Error=9016\r\n"));
}
