// What the tests of the notification service share: a recorder of events, broadcasts, and a running notifier.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "captured_log.h"
#include "support/broadcasts.h"
#include "support/waiting.h"
#include "vyra/notify.h"

namespace notify_test {

using test_support::Device_record;
using test_support::name_offset;
using test_support::wait_until;

// A call of a subscriber. For power events `subscriber` tells which of the numbered subscribers it was.
struct Event {
    int vendor = 0;
    int product = 0;
    int subscriber = 0;
    int type = 0;
};
inline bool operator==(const Event& a, const Event& b)
{
    return a.vendor == b.vendor && a.product == b.product && a.subscriber == b.subscriber && a.type == b.type;
}
std::ostream& operator<<(std::ostream& out, const Event& event);

Event usb(int vendor, int product, UsbPlugEventType type);
Event power(int subscriber, SysPowerEventType type);

void record(const Event& event);
std::vector<Event> take_events();

// Subscribers that record their calls.
void record_usb(int vendor, int product, UsbPlugEventType type);
template <int number>
void record_power(SysPowerEventType type)
{
    record(power(number, type));
}

// Every test begins and ends with a stopped notifier, empty tables and no line in the log.
class Notifier_test : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Starts the notifier and waits for its window.
    void start();
    void stop() { EXPECT_TRUE(TerminateUsbNotifier(class_name())); }

    // A class name of this process: others that run at the same time have windows, too.
    static char* class_name();
    static HWND window() { return test_support::find_window(class_name()); }
    static bool class_exists();

    static LRESULT send(UINT message, WPARAM w_param, LPARAM l_param = 0);
    static LRESULT send_device(WPARAM event, std::string_view device_name);
    static LRESULT plug(std::string_view device_name) { return send_device(DBT_DEVICEARRIVAL, device_name); }
    static LRESULT unplug(std::string_view device_name) { return send_device(DBT_DEVICEREMOVECOMPLETE, device_name); }
    static LRESULT sleep() { return send(WM_POWERBROADCAST, PBT_APMSUSPEND); }
    static LRESULT resume() { return send(WM_POWERBROADCAST, PBT_APMRESUMESUSPEND); }

    // The service works: it starts, delivers an event and stops.
    void expect_service_works();
};

constexpr const char* device_path = "\\\\?\\USB#VID_1A2B&PID_00FF#5&2C3D4E&0&1#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
constexpr int device_vendor = 0x1A2B;
constexpr int device_product = 0x00FF;

captured_log::Line exception_line(const std::string& text);

}  // namespace notify_test
