// The lock of a frame queue: one thread at a time, however long it stays.
#include "device/data_mutex.h"

#include <gtest/gtest.h>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/thread.hpp>
#include <vector>

#include "support/boost_waiting.h"

namespace {

using kvs::brenvozulta::data_mutex;
using test_support::moment;
using test_support::patience;

class Data_mutex_test : public testing::Test {
protected:
    data_mutex mutex_;
};

TEST_F(Data_mutex_test, has_one_owner_until_it_is_given_up)
{
    EXPECT_TRUE(mutex_.try_lock());
    EXPECT_FALSE(mutex_.try_lock());
    EXPECT_FALSE(mutex_.try_lock());
    mutex_.unlock();
    mutex_.lock();
    EXPECT_FALSE(mutex_.try_lock());
    mutex_.unlock();
    EXPECT_TRUE(mutex_.try_lock());
}

// The moment is longer than what is spent on trying again: such a wait sleeps.
TEST_F(Data_mutex_test, is_waited_for_as_long_as_it_takes)
{
    mutex_.lock();
    boost::thread waiting([this] {
        mutex_.lock();
        mutex_.unlock();
    });
    EXPECT_FALSE(waiting.try_join_for(moment));
    mutex_.unlock();
    EXPECT_TRUE(waiting.try_join_for(patience));
}

TEST_F(Data_mutex_test, what_it_guards_is_changed_by_one_thread_at_a_time)
{
    constexpr int rounds = 5000;
    int number = 0;
    std::vector<boost::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) {
                const boost::lock_guard<data_mutex> lock(mutex_);
                ++number;
            }
        });
    }
    for (boost::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(number, 3 * rounds);
}

}  // namespace
