// Bringing the driver up: settings, the list of scanners, the listener, the notification service.
#include "manager_test.h"

#include "log/log_settings.h"
#include "vyra/notify.h"

using namespace manager_tests;
using kvs::brenvozulta::log_settings;
using kvs::brenvozulta::power_handler;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StrEq;

namespace {

constexpr std::int64_t default_size = 52'428'800;
const Calls bring_up = {"QXDR_Initialize", "QXDR_GetDevicesList", "QXDR_SetListenerCallbackHotPlug"};

class Initialize_test : public Manager_test {};

std::string enumeration_failed(std::uint32_t result)
{
    return "--Error :initialize -- >  QXDR_GetDevicesList ret = " + std::to_string(result) + " \n";
}

}  // namespace

TEST_F(Initialize_test, calls_the_driver_in_order_and_logs_nothing)
{
    ASSERT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_OK);
    EXPECT_EQ(take_driver_calls(), bring_up);
    EXPECT_TRUE(access::initialized());
    EXPECT_EQ(access::callback(), &host_callback);
}

TEST_F(Initialize_test, registers_the_hot_plug_listener_of_the_manager)
{
    initialize();
    brenvozulta_sim_call call = {};
    ASSERT_EQ(brenvozulta_sim_get_call(2, &call), 1);
    EXPECT_EQ(call.arguments[0], reinterpret_cast<std::uintptr_t>(&kvs::brenvozulta::hot_plug_listener));
}

TEST_F(Initialize_test, keeps_whole_entries_in_the_order_of_the_driver)
{
    brenvozulta_sim_attach(scanner_2);
    brenvozulta_sim_set_serial_number(scanner_2, "SERIAL-00002");
    initialize();
    const auto detected = access::detected_devices();
    ASSERT_EQ(access::detected_names(), Lines({scanner_1, scanner_2}));
    EXPECT_EQ(detected[1].driver_handle, brenvozulta_sim_handle(scanner_2));
    EXPECT_EQ(std::string(detected[1].info.serial_number, 12), "SERIAL-00002");
}

TEST_F(Initialize_test, log_level_above_3_becomes_0)
{
    const auto level_after = [](std::uint32_t level) {
        EXPECT_EQ(VyraInitialize_N(nullptr, level, 0), VYRA_OK);
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
        return log_settings.level.load();
    };
    EXPECT_EQ(level_after(1), 1);
    EXPECT_EQ(level_after(2), 2);
    EXPECT_EQ(level_after(3), 3);
    EXPECT_EQ(level_after(4), 0);
    EXPECT_EQ(level_after(3), 3);
    EXPECT_EQ(level_after(7), 0);
    EXPECT_EQ(level_after(3), 3);
    EXPECT_EQ(level_after(0xFFFFFFFF), 0);
    EXPECT_EQ(level_after(0), 0);
}

TEST_F(Initialize_test, log_limit_below_1_becomes_50_mib)
{
    const auto limit_after = [](std::int32_t limit) {
        EXPECT_EQ(VyraInitialize_N(nullptr, 0, limit), VYRA_OK);
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
        return log_settings.limit.load();
    };
    EXPECT_EQ(limit_after(1), 1);
    EXPECT_EQ(limit_after(0), default_size);
    EXPECT_EQ(limit_after(0x7FFFFFFF), 0x7FFFFFFF);
    EXPECT_EQ(limit_after(-1), default_size);
    EXPECT_EQ(limit_after(1), 1);
    EXPECT_EQ(limit_after(std::numeric_limits<std::int32_t>::min()), default_size);
}

TEST_F(Initialize_test, second_initialize_says_so_closes_all_scanners_and_starts_the_driver_again)
{
    open_scanners(2);
    ASSERT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_OK);
    EXPECT_THAT(take_log(), ElementsAre("initialize:    clear current initialized api before the initialize\r\n"));
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_CloseDevice", "QXDR_Release", bring_up[0], bring_up[1], bring_up[2]}));
    EXPECT_EQ(access::open_devices().size(), 0U);
    EXPECT_EQ(access::callback(), &host_callback);
    EXPECT_TRUE(access::initialized());
    EXPECT_EQ(open(), 0U);
}

TEST_F(Initialize_test, line_of_a_second_initialize_is_tracing)
{
    initialize();
    ASSERT_EQ(VyraInitialize_N(nullptr, 1, 0), VYRA_OK);
    EXPECT_THAT(take_log(), ElementsAre("initialize:    clear current initialized api before the initialize\r\n"));
}

// The result of the nested terminate is not looked at.
TEST_F(Initialize_test, second_initialize_goes_on_when_the_driver_is_not_released)
{
    initialize();
    brenvozulta_sim_clear_calls();
    brenvozulta_sim_fail("QXDR_Release", driver_internal, 1);
    EXPECT_EQ(VyraInitialize_N(nullptr, 3, 0), VYRA_OK);
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_Release", bring_up[0], bring_up[1], bring_up[2]}));
    EXPECT_THAT(take_log(), ElementsAre("initialize:    clear current initialized api before the initialize\r\n",
                                        error_line("terminate", VYRA_INTERNAL)));
}

TEST_F(Initialize_test, driver_that_does_not_come_up_is_9000_and_leaves_the_library_uninitialized)
{
    for (const std::uint32_t result : {1U, 5U, 18U, 19U, 0xFFFFFFFFU}) {
        brenvozulta_sim_fail("QXDR_Initialize", result, 1);
        EXPECT_EQ(VyraInitialize_N(host_callback, 3, 7'000'000), VYRA_INTERNAL);
        EXPECT_THAT(take_log(), ElementsAre(error_line("initialize", VYRA_INTERNAL)));
        EXPECT_EQ(take_driver_calls(), Calls({"QXDR_Initialize"}));
        EXPECT_FALSE(access::initialized());
        EXPECT_EQ(find_window(), nullptr);
        EXPECT_EQ(access::callback(), &host_callback);
        EXPECT_EQ(log_settings.limit, 7'000'000);
    }
}

TEST_F(Initialize_test, driver_that_lists_nothing_with_result_5_is_success)
{
    brenvozulta_sim_remove_all();
    initialize();
    EXPECT_EQ(take_driver_calls(), bring_up);
    EXPECT_NE(wait_for_window(), nullptr);
}

// The driver then leaves the count as it was, and the entries too, which are all zero.
TEST_F(Initialize_test, count_that_result_5_left_untouched_lists_empty_entries)
{
    brenvozulta_sim_remove_all();
    initialize();
    for (const auto& entry : access::detected_devices()) {
        const DriverDeviceEntry empty = {};
        EXPECT_EQ(std::memcmp(&entry, &empty, sizeof entry), 0);
    }
    EXPECT_EQ(access::detected_devices().size(), 8U);
}

TEST_F(Initialize_test, failed_enumeration_leaves_it_initialized_without_events)
{
    brenvozulta_sim_fail("QXDR_GetDevicesList", driver_refused, 1);
    ASSERT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_INTERNAL);
    EXPECT_THAT(take_log(), ElementsAre(enumeration_failed(2)));
    EXPECT_TRUE(access::initialized());
    EXPECT_EQ(take_driver_calls(), Calls({"QXDR_Initialize", "QXDR_GetDevicesList"}));
    EXPECT_THAT(access::detected_names(), IsEmpty());
    EXPECT_EQ(find_window(), nullptr);
    EXPECT_FALSE(UnsubscribeToPowerEvent(power_handler));
    EXPECT_EQ(open(), 0U) << "device operations are served";
    EXPECT_EQ(VyraTerminate(), VYRA_OK) << "the driver is released";
    EXPECT_EQ(take_driver_calls().back(), "QXDR_Release");
    EXPECT_FALSE(access::initialized());
}

TEST_F(Initialize_test, count_of_the_driver_is_taken_within_0_to_8)
{
    brenvozulta_sim_attach(scanner_2);
    const auto listed_with = [](std::int32_t count) {
        brenvozulta_sim_set_list_count(count, 1);
        EXPECT_EQ(VyraInitialize_N(nullptr, 3, 0), VYRA_OK);
        const auto names = access::detected_names();
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
        return names;
    };
    const Lines all = {scanner_1, scanner_2, "", "", "", "", "", ""};
    EXPECT_THAT(listed_with(-1), IsEmpty());
    EXPECT_THAT(listed_with(std::numeric_limits<std::int32_t>::min()), IsEmpty());
    EXPECT_THAT(listed_with(0), IsEmpty());
    EXPECT_THAT(listed_with(1), ElementsAre(StrEq(scanner_1)));
    EXPECT_EQ(listed_with(8), all);
    EXPECT_EQ(listed_with(9), all);
    EXPECT_EQ(listed_with(0x7FFFFFFF), all);
}

TEST_F(Initialize_test, offers_the_driver_room_for_8_entries)
{
    for (std::size_t number = 2; number <= 9; ++number) {
        brenvozulta_sim_attach(scanner_name(number).c_str());
    }
    initialize();
    EXPECT_EQ(access::detected_devices().size(), 8U);
    EXPECT_EQ(access::detected_names().back(), scanner_name(8));
}

TEST_F(Initialize_test, refused_listener_is_a_warning_only)
{
    brenvozulta_sim_fail("QXDR_SetListenerCallbackHotPlug", driver_wrong_state, 1);
    EXPECT_EQ(VyraInitialize_N(nullptr, 3, 0), VYRA_OK);
    EXPECT_THAT(take_log(), ElementsAre("--Warning :initialize -- >  QXDR_SetListenerCallbackHotPlug ret = 19 \n"));
    EXPECT_NE(wait_for_window(), nullptr);
    EXPECT_TRUE(UnsubscribeToPowerEvent(power_handler));
}

TEST_F(Initialize_test, starts_the_notification_service_after_the_listener)
{
    brenvozulta_sim_block("QXDR_SetListenerCallbackHotPlug");
    auto initializing = std::async(std::launch::async, [] { return VyraInitialize_N(nullptr, 3, 0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_SetListenerCallbackHotPlug", 1, patience_ms), 1);
    EXPECT_EQ(find_window(), nullptr);
    EXPECT_FALSE(UnsubscribeToPowerEvent(power_handler));
    EXPECT_TRUE(access::initialized());
    brenvozulta_sim_unblock("QXDR_SetListenerCallbackHotPlug");
    EXPECT_EQ(initializing.get(), VYRA_OK);
    EXPECT_NE(wait_for_window(), nullptr);
    EXPECT_TRUE(UnsubscribeToPowerEvent(power_handler));
}

TEST_F(Initialize_test, is_initialized_only_once_the_driver_is)
{
    brenvozulta_sim_block("QXDR_Initialize");
    auto initializing = std::async(std::launch::async, [] { return VyraInitialize_N(nullptr, 3, 0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_Initialize", 1, patience_ms), 1);
    EXPECT_FALSE(access::initialized());
    brenvozulta_sim_unblock("QXDR_Initialize");
    EXPECT_EQ(initializing.get(), VYRA_OK);
}

// They are stored before the lock is certain: at once while another thread has it, and for good when it cannot be had.
TEST_F(Initialize_test, settings_are_in_place_before_the_lock_and_stay_when_the_wait_fails)
{
    const Lock_held_elsewhere busy;
    auto initializing = std::async(std::launch::async, [] { return VyraInitialize_N(host_callback, 3, 4711); });
    EXPECT_TRUE(becomes_true(
        [] { return access::callback() == &host_callback && log_settings.level == 3 && log_settings.limit == 4711; }));
    EXPECT_NE(initializing.wait_for(std::chrono::seconds(0)), std::future_status::ready);

    EXPECT_EQ(initializing.get(), VYRA_INTERNAL);
    EXPECT_THAT(take_log(), ElementsAre(error_line("initialize", VYRA_INTERNAL)));
    EXPECT_EQ(access::callback(), &host_callback);
    EXPECT_EQ(log_settings.level, 3);
    EXPECT_EQ(log_settings.limit, 4711);
    EXPECT_FALSE(access::initialized());
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Initialize_test, goes_on_as_soon_as_the_lock_is_free)
{
    std::future<std::int32_t> initializing;
    {
        const Lock_held_elsewhere busy;
        initializing = std::async(std::launch::async, [] { return VyraInitialize_N(host_callback, 3, 0); });
        EXPECT_TRUE(becomes_true([] { return access::callback() == &host_callback; }));
    }
    EXPECT_EQ(initializing.get(), VYRA_OK);
    EXPECT_EQ(take_driver_calls(), bring_up);
}
