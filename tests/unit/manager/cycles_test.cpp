// Many sessions one after the other: every event arrives in each, and nothing is left behind.
#include "manager_test.h"

#include <iostream>

#include "support/log_lines.h"
#include "support/process_counts.h"
#include "vyra/notify.h"

using namespace manager_tests;

namespace {

constexpr int cycle_count = 300;
constexpr int vendor = 0x1A2B;
constexpr int product = 0x00FF;
constexpr const char* device_path = "\\\\?\\USB#VID_1A2B&PID_00FF#0001#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
constexpr std::uint32_t tracing = 1;

using test_support::is_no_more_than;
using Counts = test_support::Process_counts;

std::vector<int> usb_events;    // on the notifier thread, while the sender waits
std::vector<int> power_events;  // likewise

void record_usb(int of_vendor, int of_product, UsbPlugEventType event)
{
    usb_events.push_back(of_vendor == vendor && of_product == product ? event : -1);
}

void record_power(SysPowerEventType event)
{
    power_events.push_back(event);
}

class Cycles_test : public Manager_test {
protected:
    // Initialize, one event of each kind, terminate. The log is flushed to the disk at each line: it is on in one
    // session of ten.
    void run_one(int cycle)
    {
        usb_events.clear();
        power_events.clear();
        ASSERT_EQ(VyraInitialize_N(host_callback, cycle % 10 == 0 ? tracing : 0, 0), VYRA_OK);
        ASSERT_TRUE(SubscribeToUsbEvent(vendor, product, record_usb));
        ASSERT_NE(wait_for_window(), nullptr);

        ASSERT_EQ(brenvozulta_sim_plug(scanner_2), 1);
        ASSERT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
        ASSERT_EQ(brenvozulta_sim_unplug(scanner_2), 1);
        send_power_event(PBT_APMSUSPEND);
        EXPECT_TRUE(access::suspended());
        send_power_event(PBT_APMRESUMESUSPEND);
        EXPECT_FALSE(access::suspended());
        send_device_change(DBT_DEVICEARRIVAL, device_path);
        send_device_change(DBT_DEVICEREMOVECOMPLETE, device_path);
        ASSERT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
        ASSERT_EQ(VyraTerminate(), VYRA_OK);

        ASSERT_EQ(take_host_events().size(), 2U);
        ASSERT_EQ(power_events, std::vector<int>({SysPowerSleep, SysPowerResume}));
        ASSERT_EQ(usb_events, std::vector<int>({UsbDevicePlugged, UsbDeviceUnplugged}));
        ASSERT_EQ(find_window(), nullptr);
    }
};

Counts counts()
{
    return test_support::process_counts("VYRABRENVOZULTA");
}

void print(const std::string& when, const Counts& counts)
{
    std::cout << when << ":";
    for (const auto& [what, count] : counts) {
        std::cout << "  " << what << " " << count;
    }
    std::cout << "\n";
}

std::string without_carriage_returns(std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

}  // namespace

TEST_F(Cycles_test, hundreds_of_sessions_get_all_their_events_and_leave_nothing_behind)
{
    ASSERT_TRUE(SubscribeToPowerEvent(record_power));
    testing::internal::CaptureStdout();
    run_one(0);  // what is made once and kept is made here
    const std::string first = testing::internal::GetCapturedStdout();
    ASSERT_FALSE(HasFailure()) << first;
    const Counts before = counts();

    testing::internal::CaptureStdout();
    int cycles = 0;
    while (cycles < cycle_count && !HasFatalFailure()) {
        run_one(cycles);
        ++cycles;
    }
    const std::string printed = without_carriage_returns(testing::internal::GetCapturedStdout());

    // The driver's threads end on their own, also those that were still there before.
    EXPECT_TRUE(becomes_true([&] { return is_no_more_than(before, counts()); }));
    const Counts after = counts();
    print("before", before);
    print("after " + std::to_string(cycles) + " cycles", after);

    std::string expected;
    for (int cycle = 0; cycle < cycle_count; ++cycle) {
        expected += "RQ7-3050 sleep\nRQ7-3050 resume\n";
    }
    EXPECT_TRUE(printed == expected) << printed.substr(printed.size() - std::min<std::size_t>(printed.size(), 1000));
    EXPECT_EQ(cycles, cycle_count);
    EXPECT_TRUE(UnsubscribeToPowerEvent(record_power));
    test_support::remove_logs();
}
