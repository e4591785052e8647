// What the host may do inside its device-event callback.
#include "manager_test.h"

#include <stdexcept>

using namespace manager_tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Host_callbacks_test = Manager_test;

}  // namespace

TEST_F(Host_callbacks_test, run_with_the_manager_lock_held)
{
    initialize(host_callback);
    bool others_kept_out = false;
    react_to_host_events([&](const Host_event&) {
        others_kept_out = std::async(std::launch::async, [] { return !access::lock().try_lock(); }).get();
    });
    plug(scanner_2);
    EXPECT_TRUE(others_kept_out);
    EXPECT_EQ(take_log(), plug_lines(scanner_2));
}

TEST_F(Host_callbacks_test, may_list_the_scanners)
{
    initialize(host_callback);
    std::uint32_t count = 8;
    std::vector<DeviceListRecord> records(8);
    std::int32_t status = -1;
    react_to_host_events([&](const Host_event&) { status = VyraGetDeviceList_N(&count, records.data()); });
    plug(scanner_2);
    EXPECT_EQ(status, VYRA_OK);
    EXPECT_EQ(count, 2U);
    EXPECT_STREQ(records[1].name, scanner_2);
    EXPECT_EQ(take_log(), plug_lines(scanner_2));
}

TEST_F(Host_callbacks_test, see_the_plugged_scanner_in_the_list_and_the_unplugged_one_too)
{
    initialize(host_callback);
    Lines names;
    react_to_host_events([&](const Host_event&) { names = access::detected_names(); });
    plug(scanner_2);
    EXPECT_EQ(names, Lines({scanner_1, scanner_2}));
    names.clear();
    unplug(scanner_2);
    EXPECT_EQ(names, Lines({scanner_1, scanner_2})) << "removed once the host has been told";
    EXPECT_EQ(access::detected_names(), Lines{scanner_1});
    EXPECT_EQ(take_log(), joined({plug_lines(scanner_2), unplug_lines(scanner_2)}));
}

TEST_F(Host_callbacks_test, may_open_the_scanner_they_are_told_about)
{
    initialize(host_callback);
    std::uint32_t handle = VYRA_NO_HANDLE;
    react_to_host_events([&](const Host_event& event) { VyraOpenDevice(event.name.c_str(), &handle); });
    plug(scanner_2);
    EXPECT_EQ(handle, 0U);
    EXPECT_EQ(take_log(), plug_lines(scanner_2));
}

TEST_F(Host_callbacks_test, may_close_the_scanner_they_are_told_about)
{
    initialize(host_callback);
    ASSERT_EQ(open(), 0U);
    std::int32_t status = -1;
    react_to_host_events([&](const Host_event&) { status = VyraCloseDevice_N(0); });
    unplug(scanner_1);
    EXPECT_EQ(status, VYRA_OK);
    EXPECT_EQ(access::open_devices().size(), 0U);
    EXPECT_THAT(access::detected_names(), IsEmpty());
    EXPECT_EQ(take_log(), joined({unplug_lines(scanner_1),
                                  {driver_error_line("QXDR_CloseDevice", 4), "close_device:    Error=9005\r\n"}}));
}

TEST_F(Host_callbacks_test, may_terminate_and_initialize_at_a_plug)
{
    initialize(host_callback);
    react_to_host_events([&](const Host_event&) {
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
        EXPECT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_OK);
    });
    plug(scanner_2);
    EXPECT_TRUE(access::initialized());
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_2})) << "as the new session listed them";
    EXPECT_EQ(take_log(), plug_lines(scanner_2));
}

TEST_F(Host_callbacks_test, may_terminate_and_initialize_at_an_unplug)
{
    brenvozulta_sim_attach(scanner_2);
    initialize(host_callback);
    react_to_host_events([&](const Host_event&) {
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
        EXPECT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_OK);
    });
    unplug(scanner_1);
    EXPECT_TRUE(access::initialized());
    EXPECT_EQ(access::detected_names(), Lines{scanner_2});
    EXPECT_EQ(take_log(), unplug_lines(scanner_1));
}

TEST_F(Host_callbacks_test, may_terminate)
{
    for (const bool at_plug : {true, false}) {
        if (brenvozulta_sim_is_attached(scanner_2) == (at_plug ? 1 : 0)) {
            at_plug ? brenvozulta_sim_remove(scanner_2) : brenvozulta_sim_attach(scanner_2);
        }
        initialize(host_callback);
        react_to_host_events([](const Host_event&) { EXPECT_EQ(VyraTerminate(), VYRA_OK); });
        at_plug ? plug(scanner_2) : unplug(scanner_2);
        EXPECT_EQ(take_host_events().size(), 1U);
        EXPECT_FALSE(access::initialized());
        EXPECT_THAT(access::detected_names(), IsEmpty());
        EXPECT_EQ(take_log(), at_plug ? plug_lines(scanner_2) : unplug_lines(scanner_2));
    }
}

// The event is dealt with to its end all the same, and the next one comes.
TEST_F(Host_callbacks_test, that_throw_are_logged_and_harm_nothing)
{
    initialize(host_callback);
    react_to_host_events([](const Host_event&) { throw std::runtime_error("the host's own trouble"); });
    plug(scanner_2);
    EXPECT_EQ(take_log().back(), "Exception : the host's own trouble\r\n");
    EXPECT_EQ(access::detected_names(), Lines({scanner_1, scanner_2}));
    unplug(scanner_2);
    EXPECT_EQ(take_log().back(), "Exception : the host's own trouble\r\n");
    EXPECT_EQ(access::detected_names(), Lines{scanner_1}) << "removed although the callback threw";
    react_to_host_events([](const Host_event&) { throw 7; });
    plug(scanner_2);
    EXPECT_EQ(take_log().back(), "Exception : not a standard exception\r\n");
    EXPECT_EQ(take_host_events().size(), 3U);
    EXPECT_EQ(open(scanner_2), 0U) << "the lock is free";
}

TEST_F(Host_callbacks_test, another_initialize_changes_the_callback)
{
    initialize(host_callback);
    ASSERT_EQ(VyraInitialize_N(nullptr, 3, 0), VYRA_OK);
    plug(scanner_2);
    EXPECT_THAT(take_host_events(), IsEmpty());
    EXPECT_EQ(take_log(),
              joined({{"initialize:    clear current initialized api before the initialize\r\n"}, plug_lines()}));
}
