// What a driver may do and a kind one does not: handles that come again, second calls that are refused, events inside
// calls and late, calls that return late.
#include <fstream>
#include <iterator>

#include "manager_test.h"

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

class Driver_liberties_test : public Manager_test {
protected:
    static void inside_call(std::int32_t moment, const char* function, std::int32_t what, const char* scanner,
                            std::uint32_t late_ms = 0)
    {
        brenvozulta_sim_happening happening = {};
        happening.moment = moment;
        happening.function = function;
        happening.count = brenvozulta_sim_times_called(function) + 1;
        happening.what = what;
        happening.scanner = scanner;
        happening.late_ms = late_ms;
        ASSERT_EQ(brenvozulta_sim_add_happening(&happening), 1);
    }

    // Expects these messages in the log and no others, of two threads that wrote at the same time: pieces of their
    // lines may stand in any order, each whole. Ends the session, with which the log goes.
    static void expect_pieces(const Lines& messages)
    {
        std::ifstream file(test_support::log_path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const auto count = [&](const std::string& piece) {
            std::size_t found = 0;
            for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
                ++found;
            }
            return found;
        };
        for (const std::string& message : messages) {
            const std::string on_disk = message.substr(0, message.size() - 1) + "\r\n";
            EXPECT_EQ(count(on_disk), 1U) << message;
        }
        EXPECT_EQ(count(" Thd "), messages.size());
        file.close();
        VyraTerminate();
        test_support::remove_logs();
    }

    static void wait_for_events() { ASSERT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1); }
};

}  // namespace

TEST_F(Driver_liberties_test, a_handle_that_comes_again_is_the_new_scanners)
{
    ASSERT_EQ(brenvozulta_sim_set_handle_reuse(BRENVOZULTA_SIM_REUSE_AFTER_CLOSE), 1);
    initialize(host_callback);
    ASSERT_EQ(open(scanner_1), 0U);
    void* const first = brenvozulta_sim_handle(scanner_1);
    unplug(scanner_1);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    plug(scanner_2);
    ASSERT_EQ(brenvozulta_sim_handle(scanner_2), first);
    ASSERT_EQ(open(scanner_2), 0U);
    EXPECT_FALSE(access::device(0).disconnected());
    unplug(scanner_2);
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_THAT(take_host_events(),
                ElementsAre(Host_event{5, scanner_1, 0}, Host_event{5, scanner_2, 1}, Host_event{5, scanner_2, 0}));
    EXPECT_THAT(access::detected_names(), IsEmpty());
    EXPECT_EQ(take_log(), joined({unplug_lines(scanner_1),
                                  {driver_error_line("QXDR_CloseDevice", 4), "close_device:    Error=9005\r\n"},
                                  plug_lines(scanner_2),
                                  unplug_lines(scanner_2)}));
}

// The arrival inside the call is told on the host's thread, so the removal, which is told on another, comes after it.
TEST_F(Driver_liberties_test, a_late_removal_is_the_scanners_that_had_the_handle_first)
{
    ASSERT_EQ(brenvozulta_sim_set_handle_reuse(BRENVOZULTA_SIM_REUSE_AT_ONCE), 1);
    initialize(host_callback);
    inside_call(BRENVOZULTA_SIM_ON_RETURN, "QXDR_OpenDevice", BRENVOZULTA_SIM_UNPLUG, scanner_1, 1);
    inside_call(BRENVOZULTA_SIM_ON_RETURN, "QXDR_OpenDevice", BRENVOZULTA_SIM_PLUG, scanner_2);
    ASSERT_EQ(open(scanner_1), 0U);
    ASSERT_EQ(brenvozulta_sim_wait_events_delivered(2, patience_ms), 1);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 1}, Host_event{5, scanner_1, 0}));
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_EQ(access::detected_names(), Lines{scanner_2});
    expect_pieces(joined({plug_lines(scanner_2), unplug_lines(scanner_1)}));
}

TEST_F(Driver_liberties_test, a_scanner_that_stayed_open_in_the_driver_is_refused_and_had_again_after_a_terminate)
{
    brenvozulta_sim_set_reopen_result(driver_wrong_state);
    open_scanners(2);
    ASSERT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    ASSERT_EQ(open(scanner_1), 1U) << "it displaces the second scanner, which stays open in the driver";
    std::uint32_t handle = 0;
    EXPECT_EQ(VyraOpenDevice(scanner_2, &handle), VYRA_DRIVER_STATE);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_OpenDevice ret = 19 \n", "open_device:    Error=9111\r\n"));
    EXPECT_EQ(access::device(1).name(), scanner_1);

    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    initialize();
    EXPECT_EQ(open(scanner_2), 0U);
    EXPECT_THAT(take_log(), ElementsAre(error_line("close_device", 9108)));
}

TEST_F(Driver_liberties_test, a_second_initialize_releases_the_driver_first)
{
    brenvozulta_sim_set_reinitialize_result(driver_refused);
    initialize();
    initialize();
    EXPECT_THAT(take_log(), ElementsAre("initialize:    clear current initialized api before the initialize\r\n"));
    EXPECT_EQ(take_driver_calls(),
              Calls({"QXDR_Initialize", "QXDR_GetDevicesList", "QXDR_SetListenerCallbackHotPlug", "QXDR_Release",
                     "QXDR_Initialize", "QXDR_GetDevicesList", "QXDR_SetListenerCallbackHotPlug"}));
}

TEST_F(Driver_liberties_test, an_arrival_during_the_registration_of_the_listener_is_listed_and_told)
{
    inside_call(BRENVOZULTA_SIM_ON_RETURN, "QXDR_SetListenerCallbackHotPlug", BRENVOZULTA_SIM_PLUG, scanner_2);
    initialize(host_callback);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 1}));
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_2}));
    EXPECT_EQ(take_log(), plug_lines(scanner_2));
}

TEST_F(Driver_liberties_test, a_removal_inside_the_open_leaves_a_device_that_can_be_closed)
{
    initialize(host_callback);
    inside_call(BRENVOZULTA_SIM_ON_RETURN, "QXDR_OpenDevice", BRENVOZULTA_SIM_UNPLUG, scanner_1);
    ASSERT_EQ(open(scanner_1), 0U);
    EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_1, 0}));
    EXPECT_THAT(access::detected_names(), IsEmpty());
    EXPECT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(take_log(), joined({unplug_lines(scanner_1),
                                  {driver_error_line("QXDR_SelectCaptureConfig", 4),
                                   driver_error_line("QXDR_CloseDevice", 4), "close_device:    Error=9005\r\n"}}));
}

TEST_F(Driver_liberties_test, a_host_that_lists_scanners_on_a_removal_inside_its_own_listing_gets_both)
{
    brenvozulta_sim_attach(scanner_2);
    initialize(host_callback);
    std::uint32_t inner = 8;
    std::vector<char> names(8 * VYRA_NAME_SLOT + 1000);
    react_to_host_events([&](const Host_event&) { EXPECT_EQ(VyraGetDeviceList(&inner, names.data()), VYRA_OK); });
    inside_call(BRENVOZULTA_SIM_ON_ENTRY, "QXDR_GetDevicesList", BRENVOZULTA_SIM_UNPLUG, scanner_2);
    std::uint32_t outer = 8;
    std::vector<char> outer_names(names.size());
    EXPECT_EQ(VyraGetDeviceList(&outer, outer_names.data()), VYRA_OK);
    EXPECT_EQ(inner, 1U);
    EXPECT_EQ(outer, 1U);
    EXPECT_STREQ(outer_names.data(), scanner_1);
    EXPECT_EQ(take_log(), unplug_lines(scanner_2));
}

TEST_F(Driver_liberties_test, a_return_that_is_told_inside_the_reset_ends_it_at_once)
{
    open_scanners(1);
    const brenvozulta_sim_restart never_back = {0, 0, 0};
    ASSERT_EQ(brenvozulta_sim_set_restart(&never_back), 1);
    inside_call(BRENVOZULTA_SIM_ON_RETURN, "QXDR_ResetDevice", BRENVOZULTA_SIM_PLUG, scanner_1);
    EXPECT_EQ(VyraBusReset_N(0), VYRA_OK);
    EXPECT_TRUE(access::device_detected());
    EXPECT_EQ(take_log(), plug_lines());
}

TEST_F(Driver_liberties_test, a_removal_inside_the_release_finds_nothing_and_tells_nobody)
{
    initialize(host_callback);
    inside_call(BRENVOZULTA_SIM_ON_ENTRY, "QXDR_Release", BRENVOZULTA_SIM_UNPLUG, scanner_1);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
    EXPECT_THAT(take_host_events(), IsEmpty());
    EXPECT_EQ(take_log(), unplug_lines());
}

TEST_F(Driver_liberties_test, a_removal_before_the_open_has_returned_marks_the_device_afterwards)
{
    initialize();
    ASSERT_EQ(brenvozulta_sim_block_return("QXDR_OpenDevice"), 1);
    auto opening = std::async(std::launch::async, [] { return open(scanner_1); });
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_OpenDevice", 1, patience_ms), 1);
    ASSERT_EQ(brenvozulta_sim_unplug(scanner_1), 1);
    ASSERT_EQ(brenvozulta_sim_wait_listener_inside(1, patience_ms), 1);
    ASSERT_EQ(brenvozulta_sim_unblock("QXDR_OpenDevice"), 1);
    ASSERT_EQ(opening.get(), 0U);
    wait_for_events();
    EXPECT_TRUE(access::device(0).disconnected());
    EXPECT_EQ(take_log(), unplug_lines());
}

// The event waits for the manager lock that the terminate holds: the driver leaves it to itself, and it comes to
// nothing.
TEST_F(Driver_liberties_test, a_release_that_waits_for_the_listener_ends_all_the_same)
{
    initialize(host_callback);
    ASSERT_EQ(brenvozulta_sim_block("QXDR_Release"), 1);
    auto terminating = std::async(std::launch::async, VyraTerminate);
    ASSERT_EQ(brenvozulta_sim_wait_blocked("QXDR_Release", 1, patience_ms), 1);
    ASSERT_EQ(brenvozulta_sim_unplug(scanner_1), 1);
    ASSERT_EQ(brenvozulta_sim_wait_listener_inside(1, patience_ms), 1);
    ASSERT_EQ(brenvozulta_sim_unblock("QXDR_Release"), 1);
    EXPECT_EQ(terminating.get(), VYRA_OK);
    wait_for_events();
    EXPECT_THAT(take_host_events(), IsEmpty());
    EXPECT_EQ(take_log(), joined({unplug_lines(), {error_line("ManageUnplugEvent", 9101)}}));
}

// A driver that gives its thread back before it closes.
TEST_F(Driver_liberties_test, a_callback_that_waits_for_requests_does_not_hold_up_a_close_or_a_terminate)
{
    brenvozulta_sim_set_frame_rate(1000);
    for (const bool terminate : {false, true}) {
        ASSERT_EQ(VyraInitialize_N(nullptr, 3, 0), VYRA_OK);
        brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
        ASSERT_EQ(open(scanner_1), 0U);
        ASSERT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
        ASSERT_EQ(brenvozulta_sim_wait_callbacks_inside(1, patience_ms), 1);
        EXPECT_EQ(terminate ? VyraTerminate() : VyraCloseDevice_N(0), VYRA_OK);
    }
    EXPECT_THAT(take_log(), ElementsAre("initialize:    clear current initialized api before the initialize\r\n"));
}

TEST_F(Driver_liberties_test, a_close_inside_a_close_is_refused)
{
    initialize([](std::int32_t, const char*, std::int32_t) -> std::int32_t { return VyraCloseDevice_N(0); });
    ASSERT_EQ(open(scanner_1), 0U);
    EXPECT_THAT(take_log(), ::testing::IsEmpty());
    inside_call(BRENVOZULTA_SIM_ON_ENTRY, "QXDR_CloseDevice", BRENVOZULTA_SIM_UNPLUG, scanner_1);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    const auto lines = take_log();
    EXPECT_THAT(lines, ::testing::Contains(error_line("close_device", VYRA_INTERNAL)));
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_BAD_SCANNER_IDX);
    EXPECT_THAT(take_log(), ElementsAre(error_line("close_device", 9108)));
}

// The scanner whose close is under way is not closed a second time.
TEST_F(Driver_liberties_test, a_terminate_inside_a_close_closes_the_other_scanners)
{
    brenvozulta_sim_attach(scanner_2);
    initialize(host_callback);
    ASSERT_EQ(open(scanner_1), 0U);
    ASSERT_EQ(open(scanner_2), 1U);
    const std::vector<void*> handles = {access::device(0).driver_handle(), access::device(1).driver_handle()};
    std::int32_t terminated = -1;
    react_to_host_events([&](const Host_event&) { terminated = VyraTerminate(); });
    brenvozulta_sim_clear_calls();
    inside_call(BRENVOZULTA_SIM_ON_ENTRY, "QXDR_CloseDevice", BRENVOZULTA_SIM_UNPLUG, scanner_1);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_EQ(terminated, VYRA_OK);
    EXPECT_THAT(closed_in_driver(), ::testing::UnorderedElementsAreArray(handles));
    EXPECT_EQ(take_log(), joined({unplug_lines(scanner_1),
                                  {driver_error_line("QXDR_CloseDevice", 3), "close_device:    Error=9101\r\n"}}));
    EXPECT_FALSE(access::initialized());
    EXPECT_EQ(access::open_devices().size(), 0U);
}

TEST_F(Driver_liberties_test, an_open_inside_which_the_session_ends_opens_nothing)
{
    for (const bool begins_anew : {false, true}) {
        brenvozulta_sim_attach(scanner_2);
        initialize(host_callback);
        react_to_host_events([&](const Host_event&) {
            EXPECT_EQ(VyraTerminate(), VYRA_OK);
            if (begins_anew) {
                initialize(host_callback);
            }
        });
        inside_call(BRENVOZULTA_SIM_ON_RETURN, "QXDR_OpenDevice", BRENVOZULTA_SIM_UNPLUG, scanner_2);
        std::uint32_t handle = 7;
        EXPECT_EQ(VyraOpenDevice(scanner_1, &handle), VYRA_NOT_INITIALIZED);
        EXPECT_EQ(handle, VYRA_NO_HANDLE);
        EXPECT_EQ(access::open_devices().size(), 0U);
        EXPECT_EQ(access::initialized(), begins_anew);
        react_to_host_events({});
        // A driver that is released refuses the rest of the open; one that is up again does not.
        const Lines refused =
            begins_anew ? Lines{error_line("open_device", VYRA_NOT_INITIALIZED)}
                        : Lines{driver_error_line("QXDR_SetCallbackAcquisition", 3), "open_device:    Error=9101\r\n"};
        EXPECT_EQ(take_log(), joined({unplug_lines(scanner_2), refused}));
    }
    EXPECT_EQ(open(scanner_1), 0U) << "the new session is like any other";
}

TEST_F(Driver_liberties_test, a_callback_that_waits_for_requests_does_not_hold_up_a_second_start)
{
    brenvozulta_sim_set_frame_rate(1000);
    initialize();
    brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
    ASSERT_EQ(open(scanner_1), 0U);
    ASSERT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
    ASSERT_EQ(brenvozulta_sim_wait_callbacks_inside(1, patience_ms), 1);
    EXPECT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
    EXPECT_EQ(access::device(0).video_state(), kvs::brenvozulta::VIDEO_RUNNING);
    EXPECT_EQ(VyraStopVideo(0), VYRA_OK);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_THAT(take_log(), ::testing::IsEmpty());
}

TEST_F(Driver_liberties_test, a_stop_inside_a_close_does_not_wait_for_a_thread_that_has_gone)
{
    static std::int32_t stopped;
    stopped = -1;
    initialize([](std::int32_t, const char*, std::int32_t) -> std::int32_t { return stopped = VyraStopVideo(0); });
    ASSERT_EQ(open(scanner_1), 0U);
    ASSERT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
    inside_call(BRENVOZULTA_SIM_ON_ENTRY, "QXDR_CloseDevice", BRENVOZULTA_SIM_UNPLUG, scanner_1);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    EXPECT_NE(stopped, -1);
    EXPECT_EQ(take_log(), joined({unplug_lines(scanner_1),
                                  {driver_error_line("QXDR_StopCapture", 4), driver_error_line("QXDR_CloseDevice", 4),
                                   "close_device:    Error=9005\r\n"}}));
}
