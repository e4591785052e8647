#include "notify/power_subscriptions.h"

#include <algorithm>
#include <array>
#include <boost/thread/thread.hpp>
#include <stdexcept>

#include "support.h"

using kvs::brenvozulta::power_subscriptions;
using namespace notify_test;

namespace {

constexpr std::array<PowerEventCallback, 11> recorders = {
    record_power<0>, record_power<1>, record_power<2>, record_power<3>, record_power<4>, record_power<5>,
    record_power<6>, record_power<7>, record_power<8>, record_power<9>, record_power<10>};

class Power_subscriptions_test : public testing::Test {
protected:
    void SetUp() override
    {
        take_events();
        ASSERT_TRUE(captured_log::take().empty());
        current = &table;
    }
    void TearDown() override { EXPECT_TRUE(captured_log::take().empty()); }

    std::vector<int> called()
    {
        take_events();
        table.dispatch(SysPowerSleep);
        std::vector<int> numbers;
        for (const Event& event : take_events()) {
            numbers.push_back(event.subscriber);
        }
        return numbers;
    }

    void fill()
    {
        for (int place = 0; place < 10; ++place) {
            ASSERT_TRUE(table.subscribe(recorders[static_cast<std::size_t>(place)]));
        }
    }

    power_subscriptions table;
    // For subscribers, which are plain functions.
    static inline power_subscriptions* current = nullptr;
};

TEST_F(Power_subscriptions_test, the_same_function_twice_fills_one_place_only)
{
    EXPECT_TRUE(table.subscribe(recorders[1]));
    EXPECT_TRUE(table.subscribe(recorders[1]));
    EXPECT_EQ(called(), std::vector<int>{1});
    EXPECT_TRUE(table.unsubscribe(recorders[1]));
    EXPECT_FALSE(table.unsubscribe(recorders[1]));
}

TEST_F(Power_subscriptions_test, the_eleventh_function_is_refused)
{
    fill();
    EXPECT_FALSE(table.subscribe(recorders[10]));
    EXPECT_TRUE(table.subscribe(recorders[9]));
    EXPECT_EQ(called(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST_F(Power_subscriptions_test, unsubscribing_an_unknown_function_is_refused)
{
    EXPECT_FALSE(table.unsubscribe(recorders[0]));
    EXPECT_TRUE(table.subscribe(recorders[1]));
    EXPECT_FALSE(table.unsubscribe(recorders[0]));
    EXPECT_EQ(called(), std::vector<int>{1});
}

TEST_F(Power_subscriptions_test, sleep_delivers_0_and_resume_1_in_the_order_of_the_places)
{
    EXPECT_TRUE(table.subscribe(recorders[2]));
    EXPECT_TRUE(table.subscribe(recorders[1]));
    table.dispatch(SysPowerSleep);
    table.dispatch(SysPowerResume);
    EXPECT_EQ(take_events(), (std::vector<Event>{{0, 0, 2, 0}, {0, 0, 1, 0}, {0, 0, 2, 1}, {0, 0, 1, 1}}));
}

TEST_F(Power_subscriptions_test, a_freed_place_is_filled_first)
{
    fill();
    EXPECT_TRUE(table.unsubscribe(recorders[4]));
    EXPECT_TRUE(table.subscribe(recorders[10]));
    EXPECT_EQ(called(), (std::vector<int>{0, 1, 2, 3, 10, 5, 6, 7, 8, 9}));
}

TEST_F(Power_subscriptions_test, a_function_behind_a_freed_place_can_be_stored_a_second_time)
{
    EXPECT_TRUE(table.subscribe(recorders[1]));
    EXPECT_TRUE(table.subscribe(recorders[2]));
    EXPECT_TRUE(table.unsubscribe(recorders[1]));
    EXPECT_TRUE(table.subscribe(recorders[2]));
    EXPECT_EQ(called(), (std::vector<int>{2, 2}));
    EXPECT_TRUE(table.unsubscribe(recorders[2]));
    EXPECT_EQ(called(), std::vector<int>{2});
}

TEST_F(Power_subscriptions_test, a_null_function_is_accepted_while_a_place_is_free_and_stores_nothing)
{
    EXPECT_TRUE(table.subscribe(nullptr));
    EXPECT_TRUE(table.unsubscribe(nullptr));
    EXPECT_TRUE(called().empty());
    fill();
    EXPECT_FALSE(table.subscribe(nullptr));
    EXPECT_FALSE(table.unsubscribe(nullptr));
}

void throw_error(SysPowerEventType)
{
    throw std::runtime_error("out of order");
}
void throw_number(SysPowerEventType)
{
    throw 42;
}

TEST_F(Power_subscriptions_test, a_subscriber_that_throws_keeps_nothing_from_the_others)
{
    EXPECT_TRUE(table.subscribe(throw_error));
    EXPECT_TRUE(table.subscribe(recorders[1]));
    EXPECT_TRUE(table.subscribe(throw_number));
    EXPECT_TRUE(table.subscribe(recorders[2]));
    EXPECT_EQ(called(), (std::vector<int>{1, 2}));
    EXPECT_EQ(captured_log::take(),
              (captured_log::Lines{exception_line("out of order"), exception_line("not a standard exception")}));
    // The table is not left locked: another thread gets at it.
    boost::thread([this] { EXPECT_TRUE(table.unsubscribe(throw_error)); }).join();
}

TEST_F(Power_subscriptions_test, a_subscriber_may_change_the_table_from_inside)
{
    const PowerEventCallback change = [](SysPowerEventType type) {
        record_power<7>(type);
        EXPECT_TRUE(current->unsubscribe(recorders[1]));
        EXPECT_TRUE(current->subscribe(recorders[3]));
        EXPECT_TRUE(current->subscribe(recorders[4]));
    };
    EXPECT_TRUE(table.subscribe(recorders[1]));
    EXPECT_TRUE(table.subscribe(change));
    EXPECT_TRUE(table.subscribe(recorders[2]));
    // 3 takes the place of 1, which has had its turn; 4 stands behind and is called already.
    EXPECT_EQ(called(), (std::vector<int>{1, 7, 2, 4}));
    EXPECT_TRUE(table.unsubscribe(change));
    EXPECT_EQ(called(), (std::vector<int>{3, 2, 4}));
}

std::atomic<bool> inside{false};
std::atomic<bool> may_return{false};

void stay_inside(SysPowerEventType)
{
    inside = true;
    wait_until([] { return may_return.load(); });
    inside = false;
}

TEST_F(Power_subscriptions_test, once_unsubscribed_a_subscriber_does_not_run_any_more)
{
    inside = may_return = false;
    EXPECT_TRUE(table.subscribe(stay_inside));
    boost::thread dispatcher([this] { table.dispatch(SysPowerSleep); });
    wait_until([] { return inside.load(); });
    boost::thread releaser([] { may_return = true; });
    EXPECT_TRUE(table.unsubscribe(stay_inside));
    EXPECT_FALSE(inside);
    releaser.join();
    dispatcher.join();
}

TEST_F(Power_subscriptions_test, threads_may_change_the_table_while_events_are_dispatched)
{
    EXPECT_TRUE(table.subscribe(recorders[0]));
    boost::thread_group threads;
    for (std::size_t thread = 1; thread <= 3; ++thread) {
        threads.create_thread([this, thread] {
            for (int round = 0; round < 1000; ++round) {
                EXPECT_TRUE(table.subscribe(recorders[thread]));
                EXPECT_TRUE(table.unsubscribe(recorders[thread]));
            }
        });
    }
    int own = 0;
    for (int round = 0; round < 1000; ++round) {
        const std::vector<int> numbers = called();
        own += static_cast<int>(std::count(numbers.begin(), numbers.end(), 0));
    }
    threads.join_all();
    EXPECT_EQ(own, 1000);
}

}  // namespace
