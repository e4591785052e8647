#include "notify/usb_subscriptions.h"

#include <boost/thread/thread.hpp>

#include "support.h"

using kvs::brenvozulta::usb_subscriptions;
using namespace notify_test;

namespace {

class Usb_subscriptions_test : public testing::Test {
protected:
    void SetUp() override { take_events(); }

    void fill(int count)
    {
        for (int product = 1; product <= count; ++product) {
            ASSERT_TRUE(table.subscribe(1, product, record_usb)) << product;
        }
    }

    usb_subscriptions table;
};

void record_other(int vendor, int product, UsbPlugEventType)
{
    record({vendor, product, 99, 99});
}

TEST_F(Usb_subscriptions_test, nine_succeed_and_the_tenth_is_refused_though_a_place_is_free)
{
    fill(9);
    EXPECT_FALSE(table.subscribe(1, 10, record_usb));
    table.dispatch(1, 10, UsbDevicePlugged);
    table.dispatch(1, 9, UsbDevicePlugged);
    EXPECT_EQ(take_events(), std::vector<Event>{usb(1, 9, UsbDevicePlugged)});
}

TEST_F(Usb_subscriptions_test, the_same_pair_twice_is_refused_and_the_first_callback_stays)
{
    EXPECT_TRUE(table.subscribe(1, 2, record_usb));
    EXPECT_FALSE(table.subscribe(1, 2, record_other));
    table.dispatch(1, 2, UsbDevicePlugged);
    EXPECT_EQ(take_events(), std::vector<Event>{usb(1, 2, UsbDevicePlugged)});
}

TEST_F(Usb_subscriptions_test, an_arrival_delivers_0_and_a_removal_1)
{
    EXPECT_TRUE(table.subscribe(1, 2, record_usb));
    table.dispatch(1, 2, UsbDevicePlugged);
    table.dispatch(1, 2, UsbDeviceUnplugged);
    EXPECT_EQ(take_events(), (std::vector<Event>{{1, 2, 0, 0}, {1, 2, 0, 1}}));
}

TEST_F(Usb_subscriptions_test, both_identifiers_must_match)
{
    EXPECT_TRUE(table.subscribe(1, 2, record_usb));
    EXPECT_TRUE(table.subscribe(2, 1, record_usb));
    table.dispatch(1, 1, UsbDevicePlugged);
    table.dispatch(2, 2, UsbDevicePlugged);
    EXPECT_TRUE(take_events().empty());
    EXPECT_FALSE(table.unsubscribe(1, 1));
}

TEST_F(Usb_subscriptions_test, an_ended_subscription_frees_its_place)
{
    fill(9);
    EXPECT_TRUE(table.unsubscribe(1, 5));
    table.dispatch(1, 5, UsbDevicePlugged);
    EXPECT_TRUE(take_events().empty());
    EXPECT_TRUE(table.subscribe(1, 10, record_usb));
    EXPECT_FALSE(table.subscribe(1, 11, record_usb));
}

TEST_F(Usb_subscriptions_test, ending_an_unknown_subscription_is_refused)
{
    EXPECT_FALSE(table.unsubscribe(1, 2));
    EXPECT_TRUE(table.subscribe(1, 2, record_usb));
    EXPECT_TRUE(table.unsubscribe(1, 2));
    EXPECT_FALSE(table.unsubscribe(1, 2));
}

TEST_F(Usb_subscriptions_test, the_pair_0_0_is_refused_while_a_place_is_free)
{
    EXPECT_FALSE(table.subscribe(0, 0, record_usb));
    fill(9);
    EXPECT_FALSE(table.subscribe(0, 0, record_usb));
}

TEST_F(Usb_subscriptions_test, a_pair_with_one_zero_is_a_pair_like_any_other)
{
    EXPECT_TRUE(table.subscribe(0, 1, record_usb));
    EXPECT_TRUE(table.subscribe(1, 0, record_usb));
    table.dispatch(0, 1, UsbDevicePlugged);
    table.dispatch(1, 0, UsbDevicePlugged);
    table.dispatch(0, 0, UsbDevicePlugged);
    EXPECT_EQ(take_events(), (std::vector<Event>{{0, 1, 0, 0}, {1, 0, 0, 0}}));
}

TEST_F(Usb_subscriptions_test, ending_the_pair_0_0_lowers_the_count)
{
    fill(9);
    EXPECT_TRUE(table.unsubscribe(0, 0));
    EXPECT_TRUE(table.subscribe(1, 10, record_usb));
    // All ten places are taken now: the pair 0, 0 is nowhere.
    EXPECT_FALSE(table.unsubscribe(0, 0));
    EXPECT_FALSE(table.subscribe(1, 11, record_usb));
    table.dispatch(1, 10, UsbDevicePlugged);
    EXPECT_EQ(take_events(), std::vector<Event>{usb(1, 10, UsbDevicePlugged)});
}

TEST_F(Usb_subscriptions_test, with_the_count_below_zero_the_places_are_the_limit)
{
    EXPECT_TRUE(table.unsubscribe(0, 0));
    EXPECT_TRUE(table.unsubscribe(0, 0));
    fill(10);
    EXPECT_FALSE(table.subscribe(1, 11, record_usb));
    EXPECT_FALSE(table.subscribe(0, 0, record_usb));
}

TEST_F(Usb_subscriptions_test, a_null_callback_occupies_a_place_and_is_not_called)
{
    EXPECT_TRUE(table.subscribe(1, 2, nullptr));
    EXPECT_FALSE(table.subscribe(1, 2, record_usb));
    table.dispatch(1, 2, UsbDevicePlugged);
    EXPECT_TRUE(take_events().empty());
    EXPECT_TRUE(table.unsubscribe(1, 2));
}

TEST_F(Usb_subscriptions_test, clearing_forgets_the_subscriptions_and_the_count)
{
    fill(9);
    table.clear();
    table.dispatch(1, 1, UsbDevicePlugged);
    EXPECT_TRUE(take_events().empty());
    EXPECT_FALSE(table.unsubscribe(1, 1));
    fill(9);
    EXPECT_FALSE(table.subscribe(1, 10, record_usb));
}

// The table is used by a host's threads and the notifier thread at once.
TEST_F(Usb_subscriptions_test, threads_may_change_the_table_while_events_are_dispatched)
{
    EXPECT_TRUE(table.subscribe(9, 9, record_usb));
    boost::thread_group threads;
    for (int thread = 1; thread <= 3; ++thread) {
        threads.create_thread([this, thread] {
            for (int round = 0; round < 1000; ++round) {
                EXPECT_TRUE(table.subscribe(thread, 1, nullptr));
                EXPECT_TRUE(table.unsubscribe(thread, 1));
            }
        });
    }
    for (int round = 0; round < 1000; ++round) {
        table.dispatch(9, 9, UsbDevicePlugged);
        table.dispatch(1, 1, UsbDevicePlugged);
    }
    threads.join_all();
    EXPECT_EQ(take_events().size(), 1000U);
}

}  // namespace
