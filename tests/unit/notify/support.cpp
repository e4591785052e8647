#include "support.h"

#include <mutex>
#include <ostream>
#include <utility>

#include "notify/usb_subscriptions.h"

namespace notify_test {
namespace {

std::mutex events_mutex;
std::vector<Event> events;

}  // namespace

std::ostream& operator<<(std::ostream& out, const Event& event)
{
    return out << '{' << event.vendor << ", " << event.product << ", subscriber " << event.subscriber << ", type "
               << event.type << '}';
}

Event usb(int vendor, int product, UsbPlugEventType type)
{
    return {vendor, product, 0, type};
}

Event power(int subscriber, SysPowerEventType type)
{
    return {0, 0, subscriber, type};
}

void record(const Event& event)
{
    const std::lock_guard<std::mutex> lock(events_mutex);
    events.push_back(event);
}

std::vector<Event> take_events()
{
    const std::lock_guard<std::mutex> lock(events_mutex);
    return std::exchange(events, {});
}

void record_usb(int vendor, int product, UsbPlugEventType type)
{
    record(usb(vendor, product, type));
}

void Notifier_test::SetUp()
{
    take_events();
    ASSERT_TRUE(captured_log::take().empty());
    // A stop leaves the subscriptions of the test before.
    kvs::brenvozulta::the_usb_subscriptions().clear();
    ASSERT_EQ(window(), nullptr);
}

void Notifier_test::TearDown()
{
    stop();
    EXPECT_EQ(window(), nullptr);
    EXPECT_FALSE(class_exists());
    EXPECT_TRUE(captured_log::take().empty());
    EXPECT_TRUE(take_events().empty());
}

void Notifier_test::start()
{
    ASSERT_TRUE(InitUsbNotifier(class_name()));
    ASSERT_NE(test_support::wait_for_window(class_name()), nullptr);
}

char* Notifier_test::class_name()
{
    static std::string name = "NOTIFIER_TEST_" + std::to_string(GetCurrentProcessId());
    return name.data();
}

bool Notifier_test::class_exists()
{
    WNDCLASSEXA window_class = {};
    window_class.cbSize = sizeof window_class;
    return GetClassInfoExA(GetModuleHandleA(nullptr), class_name(), &window_class) != FALSE;
}

LRESULT Notifier_test::send(UINT message, WPARAM w_param, LPARAM l_param)
{
    const HWND target = window();
    EXPECT_NE(target, nullptr);
    return SendMessageA(target, message, w_param, l_param);
}

LRESULT Notifier_test::send_device(WPARAM event, std::string_view device_name)
{
    return test_support::send_device_change(event, device_name, window());
}

void Notifier_test::expect_service_works()
{
    take_events();
    start();
    ASSERT_TRUE(SubscribeToUsbEvent(0x0BAD, 0xCAFE, record_usb));
    EXPECT_EQ(plug("USB#VID_0BAD&PID_CAFE#1"), 0);
    EXPECT_EQ(take_events(), std::vector<Event>{usb(0x0BAD, 0xCAFE, UsbDevicePlugged)});
    stop();
    EXPECT_EQ(window(), nullptr);
}

captured_log::Line exception_line(const std::string& text)
{
    return {3, "Exception : " + text + "\r\n"};
}

}  // namespace notify_test
