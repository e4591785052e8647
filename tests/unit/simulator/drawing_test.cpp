// Memory that is not there when the simulator needs it; drawing that takes long.
#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>

#include "driver_stage.h"

namespace {

constexpr std::size_t large = 1 << 20;
std::atomic<bool> large_is_refused{false};
std::atomic<bool> large_is_held{false};
std::atomic<int> held{0};

std::atomic<bool> other_threads_are_refused{false};
thread_local bool may_allocate = false;

// A large block is a picture's, which is about to be drawn.
bool granted(std::size_t size)
{
    if (other_threads_are_refused && !may_allocate) {
        return false;
    }
    if (size >= large && large_is_held) {
        ++held;
        while (large_is_held) {
            std::this_thread::yield();
        }
    }
    return size < large || !large_is_refused;
}

}  // namespace

// The program's own, which the simulator's library then calls.
void* operator new(std::size_t size)
{
    void* const block = granted(size) ? std::malloc(size == 0 ? 1 : size) : nullptr;
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

namespace simulator_test {
namespace {

class Drawing_test : public Driver_test {
protected:
    void TearDown() override
    {
        large_is_refused = false;
        large_is_held = false;
        Driver_test::TearDown();
    }

    // Stays in the middle of drawing until it is released.
    static std::uint64_t hold_drawing(const char* name)
    {
        held = 0;
        large_is_held = true;
        const std::uint64_t ticket = brenvozulta_sim_deliver_next(name);
        while (held == 0) {
            std::this_thread::yield();
        }
        return ticket;
    }
};

TEST_F(Drawing_test, a_snapshot_fails_and_the_driver_goes_on)
{
    initialize();
    void* const handle = open();
    std::vector<std::uint8_t> buffer(4);
    large_is_refused = true;
    EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, buffer.data(), 2, 2, 1), 16U);
    large_is_refused = false;
    EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, buffer.data(), 2, 2, 1), 0U);
}

TEST_F(Drawing_test, an_image_is_lost_and_the_capture_goes_on)
{
    initialize();
    start_capture();
    large_is_refused = true;
    const std::uint64_t lost = brenvozulta_sim_deliver_next(nullptr);
    EXPECT_FALSE(brenvozulta_sim_wait_delivery_done(lost, patience_ms, nullptr));
    large_is_refused = false;
    const std::uint64_t next = brenvozulta_sim_deliver_next(nullptr);
    EXPECT_TRUE(brenvozulta_sim_wait_delivery_done(next, patience_ms, nullptr));
    EXPECT_EQ(Host::images().size(), 1U);
}

TEST_F(Drawing_test, for_one_scanner_does_not_hold_up_another)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_set_capture_config(6, "small", 8, 8));
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    start_capture();
    start_capture("second", 6);
    const std::uint64_t large_image = hold_drawing(scanner);
    const std::uint64_t small_image = brenvozulta_sim_deliver_next("second");
    EXPECT_TRUE(brenvozulta_sim_wait_delivery_done(small_image, patience_ms, nullptr));
    EXPECT_FALSE(brenvozulta_sim_wait_delivery_begun(large_image, 0));
    large_is_held = false;
    EXPECT_TRUE(brenvozulta_sim_wait_delivery_done(large_image, patience_ms, nullptr));
}

TEST_F(Drawing_test, is_waited_for_by_a_stop_whatever_its_patience)
{
    initialize();
    brenvozulta_sim_set_stop_patience(1);
    void* const handle = start_capture();
    hold_drawing(scanner);
    std::thread host([handle] {
        EXPECT_EQ(QXDR_StopCapture(handle), 0U);
        EXPECT_FALSE(large_is_held);
        EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
    });
    EXPECT_TRUE(brenvozulta_sim_wait_called("QXDR_StopCapture", 1, patience_ms));
    EXPECT_FALSE(brenvozulta_sim_wait_returned("QXDR_StopCapture", 1, 20)) << "it did not wait";
    large_is_held = false;
    host.join();
}

std::atomic<int> events_heard{0};

void count_event(std::int32_t, void*)
{
    ++events_heard;
}

TEST_F(Drawing_test, an_event_is_told_without_memory_for_its_thread)
{
    events_heard = 0;
    initialize();
    ASSERT_EQ(QXDR_SetListenerCallbackHotPlug(count_event), 0U);
    ASSERT_TRUE(brenvozulta_sim_plug("second"));
    ASSERT_TRUE(brenvozulta_sim_wait_events_delivered(1, patience_ms));
    ASSERT_TRUE(brenvozulta_sim_wait_events_done(patience_ms));
    may_allocate = true;  // to queue the event, which a thread of the simulator's then has to deliver
    other_threads_are_refused = true;
    EXPECT_TRUE(brenvozulta_sim_unplug("second"));
    EXPECT_TRUE(brenvozulta_sim_wait_events_delivered(2, patience_ms));
    other_threads_are_refused = false;
    EXPECT_EQ(events_heard, 2);
}

}  // namespace
}  // namespace simulator_test
