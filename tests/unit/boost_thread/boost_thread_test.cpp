// What the library relies on in Boost.Thread, by name: on Windows that is another implementation than natively. The
// threads of host and driver, which Boost has not started, are std::thread here.
#include <gtest/gtest.h>

#define BOOST_THREAD_PROVIDES_FUTURE
#include <atomic>
#include <boost/chrono/system_clocks.hpp>
#include <boost/thread/condition_variable.hpp>
#include <boost/thread/exceptions.hpp>
#include <boost/thread/future.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/lock_types.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/once.hpp>
#include <boost/thread/recursive_mutex.hpp>
#include <boost/thread/thread.hpp>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "support/process_counts.h"

namespace {

using boost::chrono::milliseconds;
using boost::chrono::steady_clock;

using Timed_lock = boost::unique_lock<boost::recursive_timed_mutex>;

TEST(Recursive_timed_mutex_test, lets_its_holder_in_again_and_nobody_else_in_time)
{
    boost::recursive_timed_mutex mutex;
    const Timed_lock held(mutex);
    const Timed_lock again(mutex, boost::try_to_lock);
    EXPECT_TRUE(again.owns_lock());
    std::thread([&] {
        Timed_lock other(mutex, boost::defer_lock);
        EXPECT_FALSE(other.try_lock());
        const auto before = steady_clock::now();
        EXPECT_FALSE(other.try_lock_for(milliseconds(20)));
        EXPECT_GE(steady_clock::now() - before, milliseconds(20));
    }).join();
}

TEST(Recursive_timed_mutex_test, goes_to_a_waiter_only_when_the_holder_is_out_altogether)
{
    boost::recursive_timed_mutex mutex;
    Timed_lock held(mutex);
    Timed_lock again(mutex);
    again.unlock();
    std::thread([&] { EXPECT_FALSE(Timed_lock(mutex, boost::try_to_lock).owns_lock()); }).join();
    std::atomic<bool> got{false};
    std::thread waiter([&] { got = Timed_lock(mutex, milliseconds(20'000)).owns_lock(); });
    held.unlock();
    waiter.join();
    EXPECT_TRUE(got);
}

template <class Condition, class Mutex>
void all_waiters_wake()
{
    Mutex mutex;
    Condition condition;
    bool set = false;
    int awake = 0;
    const auto wait = [&] {
        boost::unique_lock<Mutex> lock(mutex);
        while (!set) {
            condition.wait(lock);
        }
        ++awake;
    };
    std::thread foreign(wait);
    boost::thread own(wait);
    {
        const boost::lock_guard<Mutex> lock(mutex);
        set = true;
        condition.notify_all();
    }
    foreign.join();
    own.join();
    EXPECT_EQ(awake, 2);
}

TEST(Condition_variable_test, wakes_its_waiters_whoever_started_them)
{
    all_waiters_wake<boost::condition_variable, boost::mutex>();
    all_waiters_wake<boost::condition_variable_any, boost::recursive_mutex>();
}

TEST(Condition_variable_test, a_wait_ends_with_its_time)
{
    boost::mutex mutex;
    boost::condition_variable condition;
    boost::unique_lock<boost::mutex> lock(mutex);
    const auto end = steady_clock::now() + milliseconds(20);
    while (condition.wait_until(lock, end) == boost::cv_status::no_timeout) {
    }
    EXPECT_GE(steady_clock::now(), end);
    EXPECT_TRUE(lock.owns_lock());
}

TEST(Promise_test, ends_the_wait_for_its_value)
{
    boost::promise<int> promise;
    boost::future<int> future = promise.get_future();
    std::thread keeper([&] { promise.set_value(7); });
    EXPECT_EQ(future.get(), 7);
    keeper.join();
}

TEST(Promise_test, is_broken_when_it_ends_unkept)
{
    boost::future<int> future;
    {
        boost::promise<int> promise;
        future = promise.get_future();
    }
    EXPECT_THROW(future.get(), boost::broken_promise);
}

TEST(Promise_test, is_kept_and_asked_for_once)
{
    boost::promise<int> promise;
    promise.set_value(1);
    EXPECT_THROW(promise.set_value(2), boost::promise_already_satisfied);
    boost::future<int> future = promise.get_future();
    EXPECT_THROW(promise.get_future(), boost::future_already_retrieved);
    EXPECT_EQ(future.get(), 1);
}

TEST(Once_test, runs_again_after_an_exception_and_then_never_more)
{
    boost::once_flag flag = BOOST_ONCE_INIT;
    std::atomic<int> runs{0};
    EXPECT_THROW(boost::call_once(flag, [] { throw std::runtime_error("first"); }), std::runtime_error);
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] { boost::call_once(flag, [&] { ++runs; }); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(runs, 1);
}

TEST(Thread_test, that_joins_itself_is_told)
{
    boost::promise<void> started;
    int error = 0;
    boost::thread thread;
    thread = boost::thread([&, ready = started.get_future()]() mutable {
        ready.get();
        try {
            thread.join();
        } catch (const boost::thread_resource_error& raised) {
            error = raised.native_error();
        }
    });
    started.set_value();
    thread.join();
    EXPECT_EQ(error, static_cast<int>(boost::system::errc::resource_deadlock_would_occur));
}

TEST(Thread_test, that_is_detached_takes_what_it_kept_with_it)
{
    std::weak_ptr<int> seen;
    boost::promise<void> go;
    {
        auto handed = std::make_shared<std::shared_ptr<int>>(std::make_shared<int>(2));
        seen = *handed;
        boost::thread([handed, ready = go.get_future()]() mutable { ready.get(); }).detach();
    }
    EXPECT_FALSE(seen.expired());
    go.set_value();
    while (!seen.expired()) {
        std::this_thread::yield();
    }
}

TEST(Thread_test, has_a_number_that_is_its_own)
{
    const boost::thread::id here = boost::this_thread::get_id();
    boost::thread::id own;
    boost::thread thread([&] { own = boost::this_thread::get_id(); });
    EXPECT_EQ(thread.get_id() == here, false);
    const boost::thread::id known = thread.get_id();
    thread.join();
    EXPECT_EQ(own, known);
    std::thread([&] { EXPECT_NE(boost::this_thread::get_id(), here); }).join();
}

TEST(Thread_test, interruptions_wait_while_they_are_disabled)
{
    boost::promise<void> interrupted;
    bool slept = false;
    bool ended = false;
    boost::thread thread([&, ready = interrupted.get_future()]() mutable {
        {
            const boost::this_thread::disable_interruption disabled;
            ready.get();
            boost::this_thread::sleep_for(milliseconds(1));
            slept = true;
        }
        try {
            boost::this_thread::sleep_for(milliseconds(20'000));
        } catch (const boost::thread_interrupted&) {
            ended = true;
        }
    });
    thread.interrupt();
    interrupted.set_value();
    thread.join();
    EXPECT_TRUE(slept);
    EXPECT_TRUE(ended);
}

// Boost gives each thread that waits something of its own, also those that it did not start.
TEST(Thread_test, of_the_host_or_the_driver_leaves_nothing_behind)
{
    boost::recursive_timed_mutex mutex;
    boost::mutex plain;
    boost::condition_variable condition;
    const auto visit = [&] {
        std::thread([&] {
            Timed_lock(mutex, milliseconds(1)).owns_lock();
            boost::unique_lock<boost::mutex> lock(plain);
            condition.wait_for(lock, milliseconds(1));
            boost::this_thread::sleep_for(milliseconds(1));
        }).join();
    };
    const Timed_lock held(mutex);
    visit();
    const auto before = test_support::process_counts("NONE");
    for (int i = 0; i < 50; ++i) {
        visit();
    }
    EXPECT_TRUE(test_support::is_no_more_than(before, test_support::process_counts("NONE")));
}

}  // namespace
