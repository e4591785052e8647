// Scanners that are plugged in and pulled out: the manager's picture of them, and what the host is told.
#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>

#include "manager_test.h"

using namespace manager_tests;
using kvs::brenvozulta::hot_plug_listener;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class Hot_plug_test : public Manager_test {
protected:
    // An event as the driver reports it, dealt with to its end.
    static void send(std::int32_t event, const char* scanner)
    {
        brenvozulta_sim_send_event(event, brenvozulta_sim_handle(scanner));
        EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    }
};

}  // namespace

TEST_F(Hot_plug_test, plugging_a_scanner_that_was_never_opened_tells_the_host_and_adds_an_entry)
{
    initialize(host_callback);
    plug(scanner_2);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 1}));
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_2}));
    EXPECT_EQ(access::detected_devices()[1].driver_handle, brenvozulta_sim_handle(scanner_2));
    EXPECT_TRUE(access::device_detected());
    EXPECT_EQ(take_log(), plug_lines(scanner_2));
}

TEST_F(Hot_plug_test, pulling_a_listed_scanner_tells_the_host_and_removes_the_entry)
{
    brenvozulta_sim_attach(scanner_2);
    brenvozulta_sim_attach(scanner_3);
    initialize(host_callback);
    access::set_device_detected(true);
    unplug(scanner_2);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 0}));
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_3})) << "the order is kept";
    EXPECT_FALSE(access::device_detected());
    EXPECT_EQ(take_log(), unplug_lines(scanner_2));
}

TEST_F(Hot_plug_test, the_record_is_kept_whole)
{
    initialize();
    brenvozulta_sim_attach(scanner_2);
    brenvozulta_sim_set_serial_number(scanner_2, "SERIAL-00002");
    send(1, scanner_2);
    DeviceInfo info = {};
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(VyraBrenvoMGGetDeviceInfo(scanner_2, nullptr, &info), VYRA_OK);
    EXPECT_STREQ(info.serial_number, "SERIAL-00002");
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_EQ(take_log(), plug_lines());
}

TEST_F(Hot_plug_test, at_level_1_only_the_tracing_is_logged)
{
    ASSERT_EQ(VyraInitialize_N(host_callback, 1, 0), VYRA_OK);
    plug(scanner_2);
    unplug(scanner_2);
    Lines expected = joined({plug_lines(scanner_2), unplug_lines(scanner_2)});
    expected.erase(std::remove_if(expected.begin(), expected.end(),
                                  [](const std::string& line) { return line.rfind("Device ", 0) == 0; }),
                   expected.end());
    EXPECT_EQ(take_log(), expected);
}

TEST_F(Hot_plug_test, at_level_0_nothing_is_logged)
{
    ASSERT_EQ(VyraInitialize_N(host_callback, 0, 0), VYRA_OK);
    plug(scanner_2);
    unplug(scanner_2);
    EXPECT_EQ(take_host_events().size(), 2U);
}

TEST_F(Hot_plug_test, without_a_callback_the_lists_are_kept_all_the_same)
{
    initialize(nullptr);
    plug(scanner_2);
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_2}));
    unplug(scanner_1);
    EXPECT_EQ(access::detected_names(), Lines{scanner_2});
    EXPECT_EQ(take_log(), joined({plug_lines(), unplug_lines()}));
}

TEST_F(Hot_plug_test, unknown_events_do_nothing_at_all)
{
    open_scanners(1);
    access::set_device_detected(true);
    for (const std::int32_t event : {0, 3, -1, 5, 0x7FFFFFFF, std::numeric_limits<std::int32_t>::min()}) {
        send(event, scanner_1);
        EXPECT_TRUE(access::device_detected());
    }
    access::set_device_detected(false);
    send(0, scanner_1);
    EXPECT_FALSE(access::device_detected());
    EXPECT_EQ(access::detected_names(), Lines{scanner_1});
    EXPECT_FALSE(access::device(0).disconnected());
    EXPECT_THAT(take_driver_calls(), IsEmpty());
}

TEST_F(Hot_plug_test, pulling_an_open_scanner_marks_it_and_leaves_its_handle_valid)
{
    open_scanners(2);
    unplug(scanner_2);
    EXPECT_TRUE(access::device(1).disconnected());
    EXPECT_FALSE(access::device(0).disconnected());
    EXPECT_EQ(VyraBrenvoZultaSetParameters(1, 1, 2), VYRA_OK);
    EXPECT_EQ(VyraGetStatus(1), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(take_log(), joined({unplug_lines(), {error_line("get_status", 9005)}}));
    EXPECT_EQ(VyraCloseDevice_N(1), VYRA_OK);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_CloseDevice ret = 4 \n", "close_device:    Error=9005\r\n"));
}

TEST_F(Hot_plug_test, plugging_it_back_in_clears_the_mark)
{
    open_scanners(2);
    unplug(scanner_2);
    access::forget_status_change();
    plug(scanner_2);
    EXPECT_FALSE(access::device(1).disconnected());
    EXPECT_EQ(VyraGetStatus(1), VYRA_OK) << "and is a change";
    EXPECT_EQ(take_log(), joined({unplug_lines(), plug_lines()}));
}

TEST_F(Hot_plug_test, the_scanner_that_comes_back_is_found_by_name_whatever_its_case)
{
    initialize();
    ASSERT_EQ(open("rq7-3050 #1"), 0U);
    unplug(scanner_1);
    ASSERT_TRUE(access::device(0).disconnected());
    plug(scanner_1);
    EXPECT_FALSE(access::device(0).disconnected());
    EXPECT_EQ(take_log(), joined({unplug_lines(), plug_lines()}));
}

TEST_F(Hot_plug_test, a_longer_or_shorter_name_is_another_scanner)
{
    open_scanners(1);
    unplug(scanner_1);
    plug("RQ7-3050 #");
    plug("RQ7-3050 #11");
    plug("SQ7-3050 #1");
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_EQ(take_log(), joined({unplug_lines(), plug_lines(), plug_lines(), plug_lines()}));
}

// An unplug is known by the handle of the opening, which a scanner that was plugged in again no longer has.
TEST_F(Hot_plug_test, a_second_unplug_has_another_handle_and_does_not_mark)
{
    open_scanners(1);
    unplug(scanner_1);
    plug(scanner_1);
    unplug(scanner_1);
    EXPECT_FALSE(access::device(0).disconnected());
    EXPECT_THAT(access::detected_names(), IsEmpty());
    EXPECT_EQ(take_log(), joined({unplug_lines(), plug_lines(), unplug_lines()}));
}

TEST_F(Hot_plug_test, only_the_first_open_scanner_of_a_name_or_handle_is_marked)
{
    open_scanners(1);
    auto twin = boost::make_shared<kvs::brenvozulta::brenvozulta_device>();
    ASSERT_EQ(twin->open(scanner_1, 0), VYRA_OK);
    access::store_device(5, twin);
    send(2, scanner_1);
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_FALSE(twin->disconnected());
    twin->set_disconnected(true);
    send(1, scanner_1);
    EXPECT_FALSE(access::device(0).disconnected());
    EXPECT_TRUE(twin->disconnected());
    EXPECT_EQ(take_log(), joined({unplug_lines(), plug_lines()}));
}

TEST_F(Hot_plug_test, entries_without_a_device_are_passed_over)
{
    initialize();
    access::store_device(0, nullptr);
    ASSERT_EQ(open(), 1U);
    send(2, scanner_1);
    EXPECT_TRUE(access::device(1).disconnected());
    send(1, scanner_1);
    EXPECT_FALSE(access::device(1).disconnected());
    EXPECT_EQ(take_log(), joined({unplug_lines(), plug_lines()}));
}

TEST_F(Hot_plug_test, the_same_scanner_plugged_twice_is_two_records_and_an_unplug_removes_the_first)
{
    initialize(host_callback);
    brenvozulta_sim_attach(scanner_2);
    brenvozulta_sim_set_serial_number(scanner_2, "FIRST");
    send(1, scanner_2);
    brenvozulta_sim_set_serial_number(scanner_2, "SECOND");
    send(1, scanner_2);
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_2, scanner_2}));
    take_host_events();

    send(2, scanner_2);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 0}));
    ASSERT_EQ(access::detected_names(), Lines({scanner_1, scanner_2}));
    EXPECT_STREQ(access::detected_devices()[1].info.serial_number, "SECOND");
    send(2, scanner_2);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 0}));
    send(2, scanner_2);
    EXPECT_THAT(take_host_events(), IsEmpty());
    EXPECT_EQ(access::detected_names(), Lines{scanner_1});
    EXPECT_EQ(take_log(), joined({plug_lines(scanner_2), plug_lines(scanner_2), unplug_lines(scanner_2),
                                  unplug_lines(scanner_2), unplug_lines()}));
}

TEST_F(Hot_plug_test, unplug_of_an_unknown_handle_is_not_reported)
{
    initialize(host_callback);
    int nothing = 0;
    for (void* const unknown : {static_cast<void*>(&nothing), static_cast<void*>(nullptr)}) {
        brenvozulta_sim_send_event(2, unknown);
        EXPECT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    }
    EXPECT_THAT(take_host_events(), IsEmpty());
    EXPECT_EQ(access::detected_names(), Lines{scanner_1});
    EXPECT_EQ(take_log(), joined({unplug_lines(), unplug_lines()}));
}

// It was opened under a handle that the list never held.
TEST_F(Hot_plug_test, unplug_of_an_open_scanner_that_was_never_listed_marks_it_without_telling_the_host)
{
    initialize(host_callback);
    brenvozulta_sim_attach(scanner_2);
    ASSERT_EQ(open(scanner_2), 0U);
    unplug(scanner_2);
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_THAT(take_host_events(), IsEmpty());
    EXPECT_EQ(take_log(), unplug_lines());
}

TEST_F(Hot_plug_test, a_scanner_the_driver_cannot_describe_is_logged_with_the_raw_result_and_dropped)
{
    open_scanners(1);
    ASSERT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_OK);
    ASSERT_EQ(open(), 0U);
    EXPECT_THAT(take_log(), ElementsAre("initialize:    clear current initialized api before the initialize\r\n"));
    access::device(0).set_disconnected(true);
    for (const std::uint32_t result : {1U, 5U, 19U}) {
        brenvozulta_sim_fail("QXDR_GetUsbInfo", result, 1);
        send(1, scanner_1);
        const std::string undescribed = "ManagePlugEvent:  QXDR_GetUsbInfo  Error=" + std::to_string(result) + "\r\n";
        EXPECT_EQ(take_log(), joined({plug_lines(), {undescribed}}));
    }
    EXPECT_EQ(access::detected_names(), Lines{scanner_1});
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_TRUE(access::device_detected());
    EXPECT_THAT(take_host_events(), IsEmpty());
}

TEST_F(Hot_plug_test, events_before_initialize_and_after_terminate_change_nothing_but_the_flag)
{
    initialize(host_callback);
    void* const scanner = brenvozulta_sim_handle(scanner_1);
    VyraTerminate();
    brenvozulta_sim_clear_calls();
    hot_plug_listener(1, scanner);
    EXPECT_TRUE(access::device_detected());
    EXPECT_EQ(take_log(), joined({plug_lines(), {error_line("ManagePlugEvent", VYRA_NOT_INITIALIZED)}}));
    hot_plug_listener(2, scanner);
    EXPECT_FALSE(access::device_detected());
    EXPECT_EQ(take_log(), joined({unplug_lines(), {error_line("ManageUnplugEvent", VYRA_NOT_INITIALIZED)}}));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_THAT(access::detected_names(), IsEmpty());
    EXPECT_THAT(take_host_events(), IsEmpty());
}

TEST_F(Hot_plug_test, events_are_dealt_with_while_the_system_sleeps)
{
    initialize(host_callback);
    access::set_suspended(true);
    plug(scanner_2);
    unplug(scanner_2);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 1}, Host_event{5, scanner_2, 0}));
    EXPECT_EQ(take_log(), joined({plug_lines(scanner_2), unplug_lines(scanner_2)}));
}

TEST_F(Hot_plug_test, a_name_of_559_characters_reaches_the_host_whole)
{
    const std::string name(559, 'n');
    initialize(host_callback);
    plug(name.c_str());
    unplug(name.c_str());
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, name, 1}, Host_event{5, name, 0}));
    EXPECT_EQ(take_log(), joined({plug_lines(name), unplug_lines(name)}));
}
