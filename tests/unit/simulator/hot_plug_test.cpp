#include "driver_stage.h"

namespace simulator_test {
namespace {

class Hot_plug_test : public Driver_test {
protected:
    static void listen()
    {
        initialize();
        ASSERT_EQ(QXDR_SetListenerCallbackHotPlug(Listener::listen), 0U);
    }
};

TEST_F(Hot_plug_test, plug_and_unplug_are_announced_on_driver_threads)
{
    listen();
    ASSERT_TRUE(brenvozulta_sim_plug("second"));
    void* const handle = brenvozulta_sim_handle("second");
    ASSERT_TRUE(brenvozulta_sim_unplug("second"));
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    const auto events = Listener::events();
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].code, driver_event_plugged);
    EXPECT_EQ(events[1].code, driver_event_unplugged);
    for (const Received_event& event : events) {
        EXPECT_EQ(event.driver_handle, handle);
        EXPECT_NE(event.thread, brenvozulta_sim_thread_id());
    }
    EXPECT_EQ(brenvozulta_sim_events_delivered(), 2U);
}

TEST_F(Hot_plug_test, attach_and_remove_are_silent)
{
    listen();
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    ASSERT_TRUE(brenvozulta_sim_remove("second"));
    brenvozulta_sim_send_event(77, nullptr);
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(77));
}

TEST_F(Hot_plug_test, what_is_there_cannot_come_and_what_is_away_cannot_go)
{
    listen();
    EXPECT_FALSE(brenvozulta_sim_plug(scanner));
    EXPECT_FALSE(brenvozulta_sim_unplug("second"));
    EXPECT_FALSE(brenvozulta_sim_plug(""));
    ASSERT_TRUE(brenvozulta_sim_unplug(scanner));
    EXPECT_FALSE(brenvozulta_sim_unplug(scanner));
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged));
}

TEST_F(Hot_plug_test, the_listener_may_call_the_driver)
{
    initialize();
    ASSERT_EQ(QXDR_SetListenerCallbackHotPlug([](std::int32_t code, void* handle) {
                  DriverDeviceEntry entry{};
                  EXPECT_EQ(QXDR_GetUsbInfo(handle, &entry), 0U);
                  EXPECT_STREQ(entry.name, "second");
                  Listener::listen(code, handle);
              }),
              0U);
    ASSERT_TRUE(brenvozulta_sim_plug("second"));
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_EQ(Listener::codes().size(), 1U);
}

TEST_F(Hot_plug_test, without_a_listener_events_are_dropped)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_plug("second"));
    EXPECT_TRUE(brenvozulta_sim_wait_events_done(0));
    EXPECT_EQ(brenvozulta_sim_events_delivered(), 0U);
}

TEST_F(Hot_plug_test, any_code_with_any_handle_can_be_sent_even_after_release)
{
    listen();
    ASSERT_EQ(QXDR_Release(), 0U);
    int anything = 0;
    brenvozulta_sim_send_event(-5, &anything);
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    const auto events = Listener::events();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].code, -5);
    EXPECT_EQ(events[0].driver_handle, &anything);
}

TEST_F(Hot_plug_test, a_listener_that_does_not_return_holds_up_no_later_event)
{
    listen();
    Listener::hold([](const Received_event& event) { return event.code == driver_event_unplugged; });
    ASSERT_TRUE(brenvozulta_sim_unplug(scanner));
    ASSERT_TRUE(brenvozulta_sim_wait_listener_inside(1, patience_ms));
    EXPECT_FALSE(brenvozulta_sim_wait_events_done(0));
    ASSERT_TRUE(brenvozulta_sim_plug(scanner));
    ASSERT_TRUE(brenvozulta_sim_wait_events_delivered(1, patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged, driver_event_plugged));
    Listener::release();
    EXPECT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
}

TEST_F(Hot_plug_test, many_events_arrive_in_order)
{
    listen();
    std::vector<std::int32_t> expected;
    for (std::int32_t code = 10; code < 60; ++code) {
        brenvozulta_sim_send_event(code, nullptr);
        expected.push_back(code);
    }
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_EQ(Listener::codes(), expected);
}

TEST_F(Hot_plug_test, a_reset_drops_what_waits_behind_a_listener)
{
    listen();
    Listener::hold([](const Received_event& event) { return event.code == 1; });
    brenvozulta_sim_send_event(1, nullptr);
    ASSERT_TRUE(brenvozulta_sim_wait_listener_inside(1, patience_ms));
    brenvozulta_sim_reset();
    EXPECT_TRUE(brenvozulta_sim_wait_events_done(0));
    Listener::release();
}

}  // namespace
}  // namespace simulator_test
