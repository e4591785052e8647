// Threads that cannot be had: the call fails with 16, and nothing is left half done.
#include "unit/device/thread_refusal.h"

#include "driver_stage.h"

namespace simulator_test {
namespace {

using test_support::refuse_thread_after;
using test_support::thread_was_refused;

class Refusal_test : public Driver_test {
protected:
    static void listen()
    {
        initialize();
        ASSERT_EQ(QXDR_SetListenerCallbackHotPlug(Listener::listen), 0U);
    }
};

TEST_F(Refusal_test, an_initialize_without_a_thread_for_its_timeline_fails_and_the_next_one_has_it)
{
    ASSERT_TRUE(brenvozulta_sim_add_timeline(0, nullptr, 0, 1, "second"));
    refuse_thread_after(0);
    EXPECT_EQ(QXDR_Initialize(), 16U);
    EXPECT_TRUE(thread_was_refused());
    EXPECT_EQ(QXDR_Release(), 3U);
    initialize();
    EXPECT_TRUE(brenvozulta_sim_wait_attached("second", patience_ms));
}

TEST_F(Refusal_test, a_capture_without_a_thread_is_none)
{
    initialize();
    void* const handle = open();
    refuse_thread_after(0);
    EXPECT_EQ(QXDR_StartCapture(handle), 16U);
    EXPECT_FALSE(brenvozulta_sim_is_capturing(scanner));
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
    EXPECT_EQ(QXDR_StartCapture(handle), 0U);
}

TEST_F(Refusal_test, a_reset_without_a_thread_for_the_events_or_the_return_changes_nothing)
{
    listen();
    void* const handle = open();
    for (const int granted : {0, 1}) {
        refuse_thread_after(granted);
        EXPECT_EQ(QXDR_ResetDevice(handle), 16U) << granted;
        EXPECT_TRUE(thread_was_refused());
        EXPECT_TRUE(brenvozulta_sim_is_attached(scanner));
    }
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    EXPECT_TRUE(Listener::codes().empty());
    EXPECT_EQ(QXDR_ResetDevice(handle), 0U);
    ASSERT_TRUE(brenvozulta_sim_wait_events_delivered(2, patience_ms));
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged, driver_event_plugged));
}

TEST_F(Refusal_test, what_cannot_be_announced_does_not_happen)
{
    listen();
    refuse_thread_after(0);
    EXPECT_FALSE(brenvozulta_sim_plug("second"));
    EXPECT_FALSE(brenvozulta_sim_is_attached("second"));
    refuse_thread_after(0);
    EXPECT_FALSE(brenvozulta_sim_unplug(scanner));
    EXPECT_TRUE(brenvozulta_sim_is_attached(scanner));
    EXPECT_TRUE(brenvozulta_sim_plug("second"));
    ASSERT_TRUE(brenvozulta_sim_wait_events_delivered(1, patience_ms));
}

TEST_F(Refusal_test, a_delivery_without_a_thread_is_refused)
{
    initialize();
    ASSERT_EQ(QXDR_SetCallbackAcquisition(Host::callback, nullptr), 0U);
    const std::vector<std::uint8_t> pixels(1);
    const brenvozulta_sim_image image = small_image(pixels, 1);
    refuse_thread_after(0);
    EXPECT_EQ(brenvozulta_sim_deliver_async(&image), 0U);
    EXPECT_TRUE(brenvozulta_sim_deliver(&image, patience_ms, nullptr));
}

TEST_F(Refusal_test, an_entry_without_a_thread_is_not_added)
{
    initialize();
    refuse_thread_after(0);
    EXPECT_FALSE(brenvozulta_sim_add_timeline(0, nullptr, 0, 1, "second"));
    EXPECT_TRUE(brenvozulta_sim_add_timeline(0, nullptr, 0, 1, "third"));
    ASSERT_TRUE(brenvozulta_sim_wait_attached("third", patience_ms));
    EXPECT_FALSE(brenvozulta_sim_is_attached("second"));
}

}  // namespace
}  // namespace simulator_test
