#include "driver_stage.h"

namespace simulator_test {
namespace {

class Timeline_test : public Driver_test {
protected:
    static void listen() { ASSERT_EQ(QXDR_SetListenerCallbackHotPlug(Listener::listen), 0U); }
};

TEST_F(Timeline_test, scanners_come_and_go_by_the_clock_in_order)
{
    initialize();
    listen();
    ASSERT_EQ(QXDR_Release(), 0U);
    ASSERT_TRUE(brenvozulta_sim_add_timeline(60, nullptr, 0, 0, "second"));
    ASSERT_TRUE(brenvozulta_sim_add_timeline(30, nullptr, 0, 1, "second"));
    ASSERT_TRUE(brenvozulta_sim_add_timeline(90, nullptr, 0, 0, scanner));
    initialize();
    ASSERT_TRUE(brenvozulta_sim_wait_events_delivered(3, patience_ms));
    const auto events = Listener::events();
    EXPECT_THAT(Listener::codes(),
                testing::ElementsAre(driver_event_plugged, driver_event_unplugged, driver_event_unplugged));
    EXPECT_EQ(events[0].driver_handle, brenvozulta_sim_handle("second"));
    EXPECT_EQ(events[2].driver_handle, brenvozulta_sim_handle(scanner));
}

TEST_F(Timeline_test, a_scanner_goes_after_a_number_of_calls)
{
    ASSERT_TRUE(brenvozulta_sim_add_timeline(0, "QXDR_StartCapture", 2, 0, scanner));
    initialize();
    listen();
    void* handle = start_capture();
    ASSERT_TRUE(brenvozulta_sim_is_attached(scanner));
    ASSERT_EQ(QXDR_StopCapture(handle), 0U);
    EXPECT_EQ(QXDR_StartCapture(handle), 0U);
    ASSERT_TRUE(brenvozulta_sim_wait_events_delivered(1, patience_ms));
    EXPECT_FALSE(brenvozulta_sim_is_attached(scanner));
    EXPECT_FALSE(brenvozulta_sim_is_capturing(scanner));
    EXPECT_EQ(QXDR_StopCapture(handle), 4U);
}

TEST_F(Timeline_test, initialize_starts_it_over)
{
    ASSERT_TRUE(brenvozulta_sim_add_timeline(0, nullptr, 0, 1, "second"));
    initialize();
    ASSERT_TRUE(brenvozulta_sim_wait_attached("second", patience_ms));
    ASSERT_TRUE(brenvozulta_sim_remove("second"));
    ASSERT_EQ(QXDR_Release(), 0U);
    initialize();
    EXPECT_TRUE(brenvozulta_sim_wait_attached("second", patience_ms));
}

TEST_F(Timeline_test, what_is_added_while_it_runs_does_not_start_it_over)
{
    ASSERT_TRUE(brenvozulta_sim_add_timeline(0, nullptr, 0, 1, "second"));
    ASSERT_TRUE(brenvozulta_sim_add_timeline(0, "QXDR_OpenDevice", 2, 1, "fourth"));
    initialize();
    open();
    ASSERT_TRUE(brenvozulta_sim_wait_attached("second", patience_ms));
    ASSERT_TRUE(brenvozulta_sim_remove("second"));
    ASSERT_TRUE(brenvozulta_sim_add_timeline(20, nullptr, 0, 1, "third"));
    ASSERT_TRUE(brenvozulta_sim_wait_attached("third", patience_ms));
    EXPECT_FALSE(brenvozulta_sim_is_attached("second")) << "it came a second time";
    open();
    EXPECT_TRUE(brenvozulta_sim_wait_attached("fourth", patience_ms)) << "calls are counted anew";
}

TEST_F(Timeline_test, what_is_added_for_a_moment_that_has_passed_happens_at_once)
{
    initialize();
    open();
    ASSERT_TRUE(brenvozulta_sim_add_timeline(0, "QXDR_OpenDevice", 1, 1, "second"));
    EXPECT_TRUE(brenvozulta_sim_wait_attached("second", patience_ms));
}

TEST_F(Timeline_test, release_stops_it)
{
    ASSERT_TRUE(brenvozulta_sim_add_timeline(0, "QXDR_Release", 1, 1, "second"));
    initialize();
    ASSERT_EQ(QXDR_Release(), 0U);
    EXPECT_FALSE(brenvozulta_sim_wait_attached("second", 30));
}

TEST_F(Timeline_test, an_entry_that_finds_nothing_to_do_does_nothing)
{
    ASSERT_TRUE(brenvozulta_sim_add_timeline(0, nullptr, 0, 1, scanner));
    ASSERT_TRUE(brenvozulta_sim_add_timeline(1, nullptr, 0, 0, "nobody"));
    ASSERT_TRUE(brenvozulta_sim_add_timeline(2, nullptr, 0, 1, "second"));
    initialize();
    listen();
    ASSERT_TRUE(brenvozulta_sim_wait_attached("second", patience_ms));
    EXPECT_EQ(brenvozulta_sim_handle("nobody"), nullptr);
}

TEST_F(Timeline_test, entries_are_checked)
{
    EXPECT_FALSE(brenvozulta_sim_add_timeline(0, "QXDR_Nothing", 1, 1, scanner));
    EXPECT_FALSE(brenvozulta_sim_add_timeline(0, "QXDR_StartCapture", 0, 1, scanner));
    EXPECT_FALSE(brenvozulta_sim_add_timeline(0, nullptr, 0, 1, nullptr));
}

TEST_F(Timeline_test, it_can_be_cleared)
{
    ASSERT_TRUE(brenvozulta_sim_add_timeline(0, "QXDR_OpenDevice", 1, 1, "second"));
    initialize();
    brenvozulta_sim_clear_timeline();
    open();
    EXPECT_FALSE(brenvozulta_sim_wait_attached("second", 30));
}

TEST_F(Timeline_test, a_scenarios_timeline_runs)
{
    load(R"({"frame_rate": 0,
             "scanners": [{"name": "A"}, {"name": "B", "attached": false}],
             "timeline": [{"after_call": {"function": "QXDR_OpenDevice"}, "plug": "B"},
                          {"at_ms": 5, "after_call": {"function": "QXDR_OpenDevice", "count": 1}, "unplug": "A"}]})");
    initialize();
    listen();
    open("A");
    ASSERT_TRUE(brenvozulta_sim_wait_events_delivered(2, patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_plugged, driver_event_unplugged));
    EXPECT_TRUE(brenvozulta_sim_is_attached("B"));
    EXPECT_FALSE(brenvozulta_sim_is_attached("A"));
}

}  // namespace
}  // namespace simulator_test
