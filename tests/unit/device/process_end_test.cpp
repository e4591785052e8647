// The end of the process, which natively is only told: nothing waits any more for what other threads were to do.
#include "lifetime/process.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "device/data_mutex.h"
#include "device/stop_handshake.h"
#include "device/video_state.h"
#include "locks/locks.h"
#include "support/boost_waiting.h"
#include "support/waiting.h"

namespace {

using namespace kvs::brenvozulta;

TEST(Process_end_test, a_process_at_work_is_not_ending)
{
    EXPECT_FALSE(process_is_ending());
}

class Ending_process_test : public testing::Test {
protected:
    void SetUp() override
    {
        system_ = LoadLibraryA("ntdll.dll");
        ASSERT_NE(system_, nullptr);
    }
    void TearDown() override { EXPECT_TRUE(FreeLibrary(system_)); }

private:
    HMODULE system_ = nullptr;
};

TEST_F(Ending_process_test, is_known_by_the_systems_word)
{
    EXPECT_TRUE(process_is_ending());
}

TEST_F(Ending_process_test, no_thread_is_left_to_answer_a_stop)
{
    Stop_handshake handshake;
    Video_data video;
    handshake.begin(video, {});
    handshake.wait();
}

// A thread that was in the middle of a copy never gives the lock up.
TEST_F(Ending_process_test, no_thread_is_left_to_give_up_a_queue)
{
    data_mutex mutex;
    mutex.lock();
    mutex.lock();
    mutex.unlock();
    EXPECT_TRUE(mutex.try_lock());
}

// Nor any other lock, which the only thread that is left may need several times over.
TEST_F(Ending_process_test, no_thread_is_left_to_give_up_a_lock)
{
    static auto& lock = *new plain_mutex;  // which its owner never gives up cannot be destroyed
    lock.lock();
    for (int i = 0; i < 2; ++i) {
        lock.lock();
        lock.unlock();
    }
    EXPECT_FALSE(lock.try_lock()) << "its owner is not known to have left what it guards whole";
}

// Nor that of the operations, which a host may need until it has its scanner closed.
TEST_F(Ending_process_test, no_thread_is_left_to_give_up_the_lock_of_the_operations)
{
    static auto& lock = *new recursive_timed_mutex;
    std::thread([] { lock.lock(); }).join();
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(lock.try_lock_for(test_support::moment));
        lock.unlock();
    }
}

TEST(Process_end_test, a_lock_that_is_held_is_waited_for_and_not_had)
{
    static auto& lock = *new recursive_timed_mutex;
    std::thread([] { lock.lock(); }).join();
    EXPECT_FALSE(lock.try_lock_for(test_support::moment));
}

// Those that waited may have ended while they held the lock that is within the condition. No lock is taken here while
// the process is said to end: two threads would have it.
TEST(Process_end_test, no_thread_is_left_to_be_notified)
{
    plain_mutex mutex;
    condition changed;
    bool waiting = false;
    std::atomic<bool> notified{false};
    std::thread waiter([&] {
        scoped_lock<plain_mutex> lock(mutex);
        waiting = true;
        changed.wait(lock);
        notified = true;
    });
    test_support::wait_until([&] {
        const scoped_lock<plain_mutex> lock(mutex);
        return waiting;
    });
    const HMODULE ending = LoadLibraryA("ntdll.dll");
    changed.notify_all();
    std::this_thread::sleep_for(std::chrono::milliseconds(test_support::moment_ms));
    EXPECT_FALSE(notified);
    EXPECT_TRUE(FreeLibrary(ending));
    changed.notify_all();
    waiter.join();
}

}  // namespace
