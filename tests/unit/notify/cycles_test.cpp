// Many starts and stops one after the other: every event arrives in each, and nothing is left behind.
#include "support.h"
#include "support/process_counts.h"

using namespace notify_test;

namespace {

using Cycles_test = Notifier_test;

TEST_F(Cycles_test, two_hundred_starts_get_their_events_and_leave_nothing_behind)
{
    const auto cycle = [this] {
        start();
        ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb));
        plug(device_path);
        unplug(device_path);
        ASSERT_EQ(take_events().size(), 2U);
        stop();
    };
    cycle();  // what is made on first use is made before the count
    const auto counts = [] { return test_support::process_counts(class_name()); };
    const auto before = counts();
    for (int round = 0; round < 200 && !HasFatalFailure(); ++round) {
        cycle();
    }
    // A thread that has been joined leaves the system's list a moment later.
    wait_until([&] { return test_support::is_no_more_than(before, counts()); });
    EXPECT_PRED2(test_support::is_no_more_than, before, counts());
}

}  // namespace
