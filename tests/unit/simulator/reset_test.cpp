// Restarts of scanners, and the reset of the simulator itself.
#include <atomic>
#include <future>
#include <thread>

#include "driver_stage.h"

namespace simulator_test {
namespace {

class Reset_test : public Driver_test {
protected:
    static void* open_listened()
    {
        initialize();
        EXPECT_EQ(QXDR_SetListenerCallbackHotPlug(Listener::listen), 0U);
        return open();
    }

    static void wait_for_return()
    {
        ASSERT_TRUE(brenvozulta_sim_wait_attached(scanner, patience_ms));
        ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    }
};

TEST_F(Reset_test, a_scanner_goes_and_comes_back_under_its_handle_and_open)
{
    void* handle = open_listened();
    const brenvozulta_sim_restart restart{1, 1, 1};
    ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    wait_for_return();
    const auto events = Listener::events();
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].code, driver_event_unplugged);
    EXPECT_EQ(events[1].code, driver_event_plugged);
    EXPECT_EQ(events[0].driver_handle, handle);
    EXPECT_EQ(events[1].driver_handle, handle);
    DriverDeviceInfo info{};
    EXPECT_EQ(QXDR_GetDeviceInfo(handle, &info), 0U);
}

TEST_F(Reset_test, the_return_is_announced_while_the_listener_is_still_busy_with_the_removal)
{
    void* handle = open_listened();
    Listener::hold([](const Received_event& event) { return event.code == driver_event_unplugged; });
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    ASSERT_TRUE(brenvozulta_sim_wait_events_delivered(1, patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged, driver_event_plugged));
}

TEST_F(Reset_test, while_it_restarts_its_calls_fail_and_a_second_reset_joins_the_first)
{
    void* handle = open_listened();
    const brenvozulta_sim_restart restart{3'600'000, 1, 1};
    ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    EXPECT_FALSE(brenvozulta_sim_is_attached(scanner));
    DriverDeviceInfo info{};
    EXPECT_EQ(QXDR_GetDeviceInfo(handle, &info), 4U);
    EXPECT_EQ(QXDR_GetDeviceInfoSN(scanner, &info), 5U);
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged));
}

TEST_F(Reset_test, a_restarting_scanner_that_is_pulled_is_not_announced_twice_and_comes_back_anew)
{
    void* handle = open_listened();
    const brenvozulta_sim_restart restart{3'600'000, 1, 1};
    ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    EXPECT_TRUE(brenvozulta_sim_unplug(scanner));
    ASSERT_TRUE(brenvozulta_sim_plug(scanner));
    EXPECT_NE(brenvozulta_sim_handle(scanner), handle);
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged, driver_event_plugged));
}

TEST_F(Reset_test, a_restarting_scanner_that_is_removed_stays_away)
{
    void* handle = open_listened();
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    void* second = open("second");
    brenvozulta_sim_restart restart{50, 1, 1};
    ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    EXPECT_TRUE(brenvozulta_sim_remove(scanner));
    restart.delay_ms = 60;
    ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
    EXPECT_EQ(QXDR_ResetDevice(second), 0U);
    ASSERT_TRUE(brenvozulta_sim_wait_attached("second", patience_ms));
    EXPECT_FALSE(brenvozulta_sim_is_attached(scanner));
}

TEST_F(Reset_test, a_scanner_may_never_come_back)
{
    void* handle = open_listened();
    const brenvozulta_sim_restart restart{0, 0, 1};
    ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged));
    EXPECT_FALSE(brenvozulta_sim_is_attached(scanner));
    EXPECT_TRUE(brenvozulta_sim_plug(scanner));
}

TEST_F(Reset_test, the_return_alone_can_be_announced)
{
    void* handle = open_listened();
    const brenvozulta_sim_restart restart{1, 1, 0};
    ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    wait_for_return();
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_plugged));
}

TEST_F(Reset_test, a_restart_ends_the_capture_and_clears_leds_and_configuration)
{
    initialize();
    void* handle = start_capture(scanner, 13);
    ASSERT_EQ(QXDR_SetLeds(handle, 1, 0x1E, 1, 0), 0U);
    const brenvozulta_sim_restart restart{1, 1, 1};
    ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    EXPECT_TRUE(brenvozulta_sim_wait_acquisition_threads(0, patience_ms));
    wait_for_return();
    brenvozulta_sim_leds leds{};
    ASSERT_TRUE(brenvozulta_sim_led_state(scanner, 1, &leds));
    EXPECT_EQ(leds.pattern, 0);
    EXPECT_EQ(brenvozulta_sim_selected_config(scanner), 1);
    EXPECT_EQ(brenvozulta_sim_led_history_count(scanner), 1U);
}

TEST_F(Reset_test, the_simulators_reset_brings_the_unconfigured_state_back)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    ASSERT_TRUE(brenvozulta_sim_set_version(scanner, 9, 9, '9'));
    ASSERT_TRUE(brenvozulta_sim_fail("QXDR_Release", 9, BRENVOZULTA_SIM_ALWAYS));
    void* const old = open();
    brenvozulta_sim_reset();
    EXPECT_EQ(brenvozulta_sim_call_count(), 0U);
    EXPECT_EQ(QXDR_Release(), 3U);
    initialize();
    std::int32_t count = 0;
    DriverDeviceEntry entries[driver_list_capacity]{};
    ASSERT_EQ(QXDR_GetDevicesList(&count, entries), 0U);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(entries[0].info.version_major, 2);
    DriverDeviceInfo info{};
    EXPECT_EQ(QXDR_GetDeviceInfo(old, &info), 10U);
}

TEST_F(Reset_test, the_simulators_reset_waits_for_a_listener)
{
    initialize();
    brenvozulta_sim_set_stop_patience(patience_ms);
    static std::atomic<bool> listened;
    listened = false;
    ASSERT_EQ(QXDR_SetListenerCallbackHotPlug([](std::int32_t code, void* driver_handle) {
                  Listener::listen(code, driver_handle);
                  listened = true;
              }),
              0U);
    Listener::hold([](const Received_event&) { return true; });
    ASSERT_TRUE(brenvozulta_sim_plug("second"));
    ASSERT_TRUE(brenvozulta_sim_wait_listener_inside(1, patience_ms));
    auto listened_before = std::async(std::launch::async, [] {
        brenvozulta_sim_reset();
        return listened.load();
    });
    while (brenvozulta_sim_is_attached("second") != 0) {
        std::this_thread::yield();  // until the reset has begun
    }
    Listener::release();
    EXPECT_TRUE(listened_before.get());
}

TEST_F(Reset_test, a_callback_parked_through_the_simulators_reset_touches_nothing_new)
{
    initialize();
    start_capture();
    brenvozulta_sim_set_stop_patience(1);
    const std::vector<std::uint8_t> pixels(4, 9);
    const brenvozulta_sim_image image = small_image(pixels, 2);
    Host::park();
    ASSERT_TRUE(brenvozulta_sim_wait_delivery_begun(brenvozulta_sim_deliver_async(&image), patience_ms));
    brenvozulta_sim_reset();
    EXPECT_EQ(brenvozulta_sim_callbacks_inside(), 0U);
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 1U);
    Host::release();
    EXPECT_TRUE(brenvozulta_sim_wait_acquisition_threads(0, patience_ms));
    EXPECT_EQ(brenvozulta_sim_callbacks_returned(), 0U);
}

}  // namespace
}  // namespace simulator_test
