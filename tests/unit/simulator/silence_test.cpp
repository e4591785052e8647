// What has ended when a stop, a close or a release has returned.
#include <future>

#include "driver_stage.h"
#include "system.h"

namespace simulator_test {
namespace {

class Silence_test : public Driver_test {
protected:
    // A capture whose first picture is being drawn, with a patience that is no match for it.
    static void* start_drawing()
    {
        initialize();
        brenvozulta_sim_set_stop_patience(1);
        void* const handle = start_capture();
        EXPECT_NE(brenvozulta_sim_deliver_next(nullptr), 0U);
        EXPECT_FALSE(brenvozulta_sim_wait_callbacks_entered(1, moment_ms));
        return handle;
    }

    static constexpr std::uint32_t moment_ms = 20;  // in which drawing begins, and does not end

    static void listen()
    {
        initialize();
        ASSERT_EQ(QXDR_SetListenerCallbackHotPlug(Listener::listen), 0U);
    }

    const std::vector<std::uint8_t> pixels_{1};
    const brenvozulta_sim_image image_ = small_image(pixels_, 1);
};

TEST_F(Silence_test, a_stop_waits_for_a_thread_that_draws)
{
    EXPECT_EQ(QXDR_StopCapture(start_drawing()), 0U);
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
}

TEST_F(Silence_test, a_close_waits_for_a_thread_that_draws)
{
    void* handle = start_drawing();
    EXPECT_EQ(QXDR_CloseDevice(&handle), 0U);
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
}

TEST_F(Silence_test, a_release_waits_for_a_thread_that_draws_also_for_a_scanner_that_is_gone)
{
    start_drawing();
    ASSERT_TRUE(brenvozulta_sim_remove(scanner));
    EXPECT_EQ(QXDR_Release(), 0U);
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
}

TEST_F(Silence_test, a_release_ends_deliveries_that_no_capture_carries)
{
    initialize();
    brenvozulta_sim_set_stop_patience(patience_ms);
    ASSERT_EQ(QXDR_SetCallbackAcquisition(Host::callback, nullptr), 0U);
    for (int i = 0; i < 10; ++i) {
        ASSERT_NE(brenvozulta_sim_deliver_async(&image_), 0U);
    }
    EXPECT_EQ(QXDR_Release(), 0U);
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
    EXPECT_EQ(brenvozulta_sim_callbacks_entered(), brenvozulta_sim_callbacks_returned());
}

TEST_F(Silence_test, after_a_release_no_event_that_was_queued_is_told)
{
    listen();
    brenvozulta_sim_set_stop_patience(1);
    Listener::hold([](const Received_event& event) { return event.code == 1; });
    brenvozulta_sim_send_event(1, nullptr);
    ASSERT_TRUE(brenvozulta_sim_wait_listener_inside(1, patience_ms));
    brenvozulta_sim_send_event(2, nullptr);
    EXPECT_EQ(QXDR_Release(), 0U);
    Listener::release();
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(1));
}

TEST_F(Silence_test, a_release_waits_for_the_listener)
{
    listen();
    brenvozulta_sim_set_stop_patience(patience_ms);
    Listener::hold([](const Received_event&) { return true; });
    brenvozulta_sim_send_event(1, nullptr);
    ASSERT_TRUE(brenvozulta_sim_wait_listener_inside(1, patience_ms));
    auto delivered_before = std::async(std::launch::async, [] {
        EXPECT_EQ(QXDR_Release(), 0U);
        return brenvozulta_sim_events_delivered();
    });
    ASSERT_TRUE(brenvozulta_sim_wait_called("QXDR_Release", 1, patience_ms));
    Listener::release();
    EXPECT_EQ(delivered_before.get(), 1U);
}

TEST_F(Silence_test, a_release_inside_the_listener_does_not_wait_for_itself)
{
    initialize();
    brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
    ASSERT_EQ(QXDR_SetListenerCallbackHotPlug([](std::int32_t, void*) { EXPECT_EQ(QXDR_Release(), 0U); }), 0U);
    ASSERT_TRUE(brenvozulta_sim_unplug(scanner));
    EXPECT_TRUE(brenvozulta_sim_wait_returned("QXDR_Release", 1, patience_ms));
    EXPECT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
}

TEST_F(Silence_test, after_a_release_a_scanner_comes_without_a_word)
{
    listen();
    EXPECT_EQ(QXDR_Release(), 0U);
    ASSERT_TRUE(brenvozulta_sim_plug("second"));
    EXPECT_TRUE(brenvozulta_sim_is_attached("second"));
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_TRUE(Listener::codes().empty());
}

TEST_F(Silence_test, after_a_release_a_scanner_that_restarted_comes_back_without_a_word)
{
    listen();
    void* const handle = open();
    const brenvozulta_sim_restart restart{30, 1, 0};
    ASSERT_TRUE(brenvozulta_sim_set_restart(&restart));
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    EXPECT_EQ(QXDR_Release(), 0U);
    ASSERT_TRUE(brenvozulta_sim_wait_attached(scanner, patience_ms));
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_TRUE(Listener::codes().empty());
}

// Address sanitizers keep freed memory for a while: some 256 MB.
TEST_F(Silence_test, a_delivery_that_is_over_keeps_no_pixels)
{
    initialize();
    ASSERT_EQ(QXDR_SetCallbackAcquisition(
                  [](const std::uint8_t*, std::uint16_t, std::uint16_t, void*) { return std::int32_t{0}; }, nullptr),
              0U);
    const std::vector<std::uint8_t> pixels(std::size_t{32} << 20, 7);
    const brenvozulta_sim_image image = small_image(pixels, 32768);
    const std::size_t before = memory_in_use();
    for (int i = 0; i < 24; ++i) {
        ASSERT_TRUE(brenvozulta_sim_deliver(&image, patience_ms, nullptr));
    }
    EXPECT_LT(memory_in_use(), before + (std::size_t{400} << 20)) << "of 768 MB delivered";
}

}  // namespace
}  // namespace simulator_test
