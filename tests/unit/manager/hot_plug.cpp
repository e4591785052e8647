// Scanners that are plugged in and pulled out: the manager's picture of them, and what the host is told.
#include <boost/smart_ptr/make_shared.hpp>

#include "manager_test.h"

using namespace manager_tests;
using kvs::brenvozulta::hot_plug_listener;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const std::string plugged_line = "Device Plugged\n";
const std::string unplugged_line = "Device UnPlugged\n";
const std::string plug_trace = "ManagePlugEvent event\r\n";
const std::string unplug_trace = "ManageUnplugEvent event\r\n";

std::string telling_plug(const std::string& name)
{
    return "ManagePlugEvent event : sending plug callback for " + name + "\r\n";
}

std::string telling_unplug(const std::string& name)
{
    return "ManageUnplugEvent event : sending unplug callback for " + name + "\r\n";
}

class Hot_plug : public Manager_test {
protected:
    // An event as the driver reports it, dealt with to its end.
    static void send(std::int32_t event, const char* scanner)
    {
        brenvozulta_sim_send_event(event, brenvozulta_sim_handle(scanner));
        EXPECT_EQ(brenvozulta_sim_wait_events_done(test_support::patience_ms), 1);
    }
};

}  // namespace

TEST_F(Hot_plug, Plugging_A_Scanner_That_Was_Never_Opened_Tells_The_Host_And_Adds_An_Entry)
{
    initialize(host_callback);
    plug(scanner_2);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 1}));
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_2}));
    EXPECT_EQ(access::detected_devices()[1].driver_handle, brenvozulta_sim_handle(scanner_2));
    EXPECT_TRUE(access::device_detected());
    EXPECT_THAT(take_log(), ElementsAre(plugged_line, plug_trace, telling_plug(scanner_2)));
}

TEST_F(Hot_plug, Pulling_A_Listed_Scanner_Tells_The_Host_And_Removes_The_Entry)
{
    brenvozulta_sim_attach(scanner_2);
    brenvozulta_sim_attach(scanner_3);
    initialize(host_callback);
    access::set_device_detected(true);
    unplug(scanner_2);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 0}));
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_3})) << "the order is kept";
    EXPECT_FALSE(access::device_detected());
    EXPECT_THAT(take_log(), ElementsAre(unplugged_line, unplug_trace, telling_unplug(scanner_2)));
}

TEST_F(Hot_plug, The_Record_Is_Kept_Whole)
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
    take_log();
}

TEST_F(Hot_plug, At_Level_1_Only_The_Tracing_Is_Logged)
{
    ASSERT_EQ(VyraInitialize_N(host_callback, 1, 0), VYRA_OK);
    plug(scanner_2);
    unplug(scanner_2);
    EXPECT_THAT(take_log(), ElementsAre(plug_trace, telling_plug(scanner_2), unplug_trace, telling_unplug(scanner_2)));
}

TEST_F(Hot_plug, At_Level_0_Nothing_Is_Logged)
{
    ASSERT_EQ(VyraInitialize_N(host_callback, 0, 0), VYRA_OK);
    plug(scanner_2);
    unplug(scanner_2);
    EXPECT_EQ(take_host_events().size(), 2U);
}

TEST_F(Hot_plug, Without_A_Callback_The_Lists_Are_Kept_All_The_Same)
{
    initialize(nullptr);
    plug(scanner_2);
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_2}));
    unplug(scanner_1);
    EXPECT_EQ(access::detected_names(), Lines{scanner_2});
    EXPECT_THAT(take_log(), ElementsAre(plugged_line, plug_trace, unplugged_line, unplug_trace));
}

TEST_F(Hot_plug, Unknown_Events_Do_Nothing_At_All)
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

TEST_F(Hot_plug, Pulling_An_Open_Scanner_Marks_It_And_Leaves_Its_Handle_Valid)
{
    open_scanners(2);
    unplug(scanner_2);
    EXPECT_TRUE(access::device(1).disconnected());
    EXPECT_FALSE(access::device(0).disconnected());
    EXPECT_EQ(VyraBrenvoZultaSetParameters(1, 1, 2), VYRA_OK);
    EXPECT_EQ(VyraGetStatus(1), VYRA_DEVICE_UNAVAIL);
    take_log();
    EXPECT_EQ(VyraCloseDevice_N(1), VYRA_OK);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_CloseDevice ret = 4 \n", "close_device:    Error=9005\r\n"));
}

TEST_F(Hot_plug, Plugging_It_Back_In_Clears_The_Mark)
{
    open_scanners(2);
    unplug(scanner_2);
    access::forget_status_change();
    plug(scanner_2);
    EXPECT_FALSE(access::device(1).disconnected());
    EXPECT_EQ(VyraGetStatus(1), VYRA_OK) << "and is a change";
    take_log();
}

TEST_F(Hot_plug, The_Scanner_That_Comes_Back_Is_Found_By_Name_Whatever_Its_Case)
{
    initialize();
    ASSERT_EQ(open("rq7-3050 #1"), 0U);
    unplug(scanner_1);
    ASSERT_TRUE(access::device(0).disconnected());
    plug(scanner_1);
    EXPECT_FALSE(access::device(0).disconnected());
    take_log();
}

TEST_F(Hot_plug, A_Longer_Or_Shorter_Name_Is_Another_Scanner)
{
    open_scanners(1);
    unplug(scanner_1);
    plug("RQ7-3050 #");
    plug("RQ7-3050 #11");
    plug("SQ7-3050 #1");
    EXPECT_TRUE(access::device(0).disconnected());
    take_log();
}

// An unplug is known by the handle of the opening, which a scanner that was plugged in again no longer has.
TEST_F(Hot_plug, A_Second_Unplug_Has_Another_Handle_And_Does_Not_Mark)
{
    open_scanners(1);
    unplug(scanner_1);
    plug(scanner_1);
    unplug(scanner_1);
    EXPECT_FALSE(access::device(0).disconnected());
    EXPECT_THAT(access::detected_names(), IsEmpty());
    take_log();
}

TEST_F(Hot_plug, Only_The_First_Open_Scanner_Of_A_Name_Or_Handle_Is_Marked)
{
    open_scanners(1);
    auto twin = boost::make_shared<kvs::brenvozulta::brenvozulta_device>();
    ASSERT_EQ(twin->open(scanner_1, 0), VYRA_OK);
    access::open_devices().store(5, twin);
    send(2, scanner_1);
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_FALSE(twin->disconnected());
    twin->set_disconnected(true);
    send(1, scanner_1);
    EXPECT_FALSE(access::device(0).disconnected());
    EXPECT_TRUE(twin->disconnected());
    take_log();
}

TEST_F(Hot_plug, Entries_Without_A_Device_Are_Passed_Over)
{
    initialize();
    access::open_devices().store(0, nullptr);
    ASSERT_EQ(open(), 1U);
    send(2, scanner_1);
    EXPECT_TRUE(access::device(1).disconnected());
    send(1, scanner_1);
    EXPECT_FALSE(access::device(1).disconnected());
    take_log();
}

TEST_F(Hot_plug, The_Same_Scanner_Plugged_Twice_Is_Two_Records_And_An_Unplug_Removes_The_First)
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
    take_log();
}

TEST_F(Hot_plug, Unplug_Of_An_Unknown_Handle_Is_Not_Reported)
{
    initialize(host_callback);
    int nothing = 0;
    for (void* const unknown : {static_cast<void*>(&nothing), static_cast<void*>(nullptr)}) {
        brenvozulta_sim_send_event(2, unknown);
        EXPECT_EQ(brenvozulta_sim_wait_events_done(test_support::patience_ms), 1);
    }
    EXPECT_THAT(take_host_events(), IsEmpty());
    EXPECT_EQ(access::detected_names(), Lines{scanner_1});
    EXPECT_THAT(take_log(), ElementsAre(unplugged_line, unplug_trace, unplugged_line, unplug_trace));
}

// It was opened under a handle that the list never held.
TEST_F(Hot_plug, Unplug_Of_An_Open_Scanner_That_Was_Never_Listed_Marks_It_Without_Telling_The_Host)
{
    initialize(host_callback);
    brenvozulta_sim_attach(scanner_2);
    ASSERT_EQ(open(scanner_2), 0U);
    unplug(scanner_2);
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_THAT(take_host_events(), IsEmpty());
    EXPECT_THAT(take_log(), ElementsAre(unplugged_line, unplug_trace));
}

TEST_F(Hot_plug, A_Scanner_The_Driver_Cannot_Describe_Is_Logged_With_The_Raw_Result_And_Dropped)
{
    open_scanners(1);
    ASSERT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_OK);
    ASSERT_EQ(open(), 0U);
    take_log();
    access::device(0).set_disconnected(true);
    for (const std::uint32_t result : {1U, 5U, 19U}) {
        brenvozulta_sim_fail("QXDR_GetUsbInfo", result, 1);
        send(1, scanner_1);
        EXPECT_THAT(take_log(),
                    ElementsAre(plugged_line, plug_trace,
                                "ManagePlugEvent:  QXDR_GetUsbInfo  Error=" + std::to_string(result) + "\r\n"));
    }
    EXPECT_EQ(access::detected_names(), Lines{scanner_1});
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_TRUE(access::device_detected());
    EXPECT_THAT(take_host_events(), IsEmpty());
}

TEST_F(Hot_plug, Events_Before_Initialize_And_After_Terminate_Change_Nothing_But_The_Flag)
{
    initialize(host_callback);
    void* const scanner = brenvozulta_sim_handle(scanner_1);
    VyraTerminate();
    brenvozulta_sim_clear_calls();
    hot_plug_listener(1, scanner);
    EXPECT_TRUE(access::device_detected());
    EXPECT_THAT(take_log(), ElementsAre(plugged_line, plug_trace, refusal("ManagePlugEvent", VYRA_NOT_INITIALIZED)));
    hot_plug_listener(2, scanner);
    EXPECT_FALSE(access::device_detected());
    EXPECT_THAT(take_log(),
                ElementsAre(unplugged_line, unplug_trace, refusal("ManageUnplugEvent", VYRA_NOT_INITIALIZED)));
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    EXPECT_THAT(access::detected_names(), IsEmpty());
    EXPECT_THAT(take_host_events(), IsEmpty());
}

TEST_F(Hot_plug, Events_Are_Dealt_With_While_The_System_Sleeps)
{
    initialize(host_callback);
    access::set_suspended(true);
    plug(scanner_2);
    unplug(scanner_2);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 1}, Host_event{5, scanner_2, 0}));
    take_log();
}

TEST_F(Hot_plug, A_Name_Of_559_Characters_Reaches_The_Host_Whole)
{
    const std::string name(559, 'n');
    initialize(host_callback);
    plug(name.c_str());
    unplug(name.c_str());
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, name, 1}, Host_event{5, name, 0}));
    EXPECT_THAT(take_log(), ElementsAre(plugged_line, plug_trace, telling_plug(name), unplugged_line, unplug_trace,
                                        telling_unplug(name)));
}
