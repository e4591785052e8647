// What the running notifier delivers, through its real window.
#include <stdexcept>

#include "support.h"

using namespace notify_test;

namespace {

class Notifier_events_test : public Notifier_test {
protected:
    void SetUp() override
    {
        Notifier_test::SetUp();
        start();
    }
    void TearDown() override
    {
        for (const PowerEventCallback callback : {record_power<1>, record_power<2>}) {
            UnsubscribeToPowerEvent(callback);
        }
        Notifier_test::TearDown();
    }
    void subscribe() { ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, record_usb)); }
};

const Event plugged = usb(device_vendor, device_product, UsbDevicePlugged);
const Event unplugged = usb(device_vendor, device_product, UsbDeviceUnplugged);

TEST_F(Notifier_events_test, an_arrival_delivers_plugged_and_a_removal_unplugged)
{
    subscribe();
    EXPECT_EQ(plug(device_path), 0);
    EXPECT_EQ(take_events(), std::vector<Event>{plugged});
    EXPECT_EQ(unplug(device_path), 0);
    EXPECT_EQ(take_events(), std::vector<Event>{unplugged});
}

TEST_F(Notifier_events_test, subscribers_run_on_the_notifier_thread)
{
    static std::atomic<DWORD> subscriber_thread{0};
    ASSERT_TRUE(
        SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) { subscriber_thread = GetCurrentThreadId(); }));
    plug("VID_0001&PID_0002");
    EXPECT_EQ(subscriber_thread, GetWindowThreadProcessId(window(), nullptr));
    EXPECT_NE(subscriber_thread, GetCurrentThreadId());
}

TEST_F(Notifier_events_test, only_the_subscribed_pair_is_delivered)
{
    subscribe();
    plug("USB#VID_1A2B&PID_00FE#1");
    plug("USB#VID_1A2C&PID_00FF#1");
    plug("USB#VID_00FF&PID_1A2B#1");
    plug("USB#VID_0000&PID_0000#1");
    EXPECT_TRUE(take_events().empty());
}

TEST_F(Notifier_events_test, a_path_without_a_revision_is_delivered_as_one_with)
{
    subscribe();
    plug("\\\\?\\USB#VID_1A2B&PID_00FF#1");
    plug("\\\\?\\USB#VID_1A2B&PID_00FF&REV_0100#1");
    EXPECT_EQ(take_events(), (std::vector<Event>{plugged, plugged}));
}

TEST_F(Notifier_events_test, a_lower_case_path_is_ignored)
{
    subscribe();
    plug("\\\\?\\usb#vid_1a2b&pid_00ff#1");
    plug("\\\\?\\USB#VID_1A2B&PID_00ff#1");
    EXPECT_TRUE(take_events().empty());
}

TEST_F(Notifier_events_test, query_remove_and_removal_pending_are_ignored)
{
    subscribe();
    EXPECT_EQ(send_device(DBT_DEVICEQUERYREMOVE, device_path), 0);
    EXPECT_EQ(send_device(DBT_DEVICEREMOVEPENDING, device_path), 0);
    EXPECT_TRUE(take_events().empty());
}

TEST_F(Notifier_events_test, a_suspend_and_a_resume_call_each_power_subscriber_in_order)
{
    ASSERT_TRUE(SubscribeToPowerEvent(record_power<2>));
    ASSERT_TRUE(SubscribeToPowerEvent(record_power<1>));
    EXPECT_EQ(sleep(), 0);
    EXPECT_EQ(resume(), 0);
    EXPECT_EQ(take_events(), (std::vector<Event>{power(2, SysPowerSleep), power(1, SysPowerSleep),
                                                 power(2, SysPowerResume), power(1, SysPowerResume)}));
}

TEST_F(Notifier_events_test, broken_records_are_ignored)
{
    subscribe();
    const std::string_view name = "VID_1A2B&PID_00FF";
    const auto size = static_cast<DWORD>(name_offset + name.size());
    for (const WPARAM event : std::initializer_list<WPARAM>{DBT_DEVICEARRIVAL, DBT_DEVICEREMOVECOMPLETE}) {
        EXPECT_EQ(send(WM_DEVICECHANGE, event, 0), 0);
        EXPECT_EQ(send_device(event, ""), 0);
        // Of another type, whole and as the header alone, without a name, and with a size that ends inside the pattern.
        constexpr DWORD fixed_record = sizeof(DEV_BROADCAST_DEVICEINTERFACE_A);
        for (const Device_record& record :
             {Device_record(name, size, size, DBT_DEVTYP_VOLUME),
              Device_record("", sizeof(DEV_BROADCAST_HDR), sizeof(DEV_BROADCAST_HDR), DBT_DEVTYP_VOLUME),
              Device_record({"\0", 1}, fixed_record, fixed_record), Device_record(name, size - 1, size - 1)}) {
            EXPECT_EQ(send(WM_DEVICECHANGE, event, record.address()), 0);
        }
    }
    EXPECT_TRUE(take_events().empty());
    // The last byte makes the pattern whole, and no terminator is needed behind it.
    send(WM_DEVICECHANGE, DBT_DEVICEARRIVAL, Device_record(name, size, size).address());
    EXPECT_EQ(take_events(), std::vector<Event>{plugged});
}

TEST_F(Notifier_events_test, a_name_of_64_kib_is_delivered)
{
    subscribe();
    const std::string filling(65536, 'V');
    plug(filling);
    EXPECT_TRUE(take_events().empty());
    plug(filling + device_path);
    EXPECT_EQ(take_events(), std::vector<Event>{plugged});
}

TEST_F(Notifier_events_test, a_null_usb_callback_is_skipped)
{
    ASSERT_TRUE(SubscribeToUsbEvent(device_vendor, device_product, nullptr));
    EXPECT_EQ(plug(device_path), 0);
    EXPECT_TRUE(UnSubscribeToUsbEvent(device_vendor, device_product));
}

TEST_F(Notifier_events_test, a_usb_subscriber_may_change_the_table_from_inside)
{
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int vendor, int product, UsbPlugEventType type) {
        record(usb(vendor, product, type));
        EXPECT_TRUE(UnSubscribeToUsbEvent(1, 2));
        EXPECT_TRUE(SubscribeToUsbEvent(3, 4, record_usb));
    }));
    plug("VID_0001&PID_0002");
    plug("VID_0001&PID_0002");
    plug("VID_0003&PID_0004");
    EXPECT_EQ(take_events(), (std::vector<Event>{{1, 2, 0, 0}, {3, 4, 0, 0}}));
}

TEST_F(Notifier_events_test, a_usb_subscriber_that_throws_harms_nobody)
{
    subscribe();
    ASSERT_TRUE(SubscribeToUsbEvent(1, 2, [](int, int, UsbPlugEventType) { throw std::runtime_error("usb trouble"); }));
    ASSERT_TRUE(SubscribeToUsbEvent(1, 3, [](int, int, UsbPlugEventType) { throw 42; }));
    EXPECT_EQ(plug("VID_0001&PID_0002"), 0);
    EXPECT_EQ(plug("VID_0001&PID_0003"), 0);
    EXPECT_EQ(captured_log::take(),
              (captured_log::Lines{exception_line("usb trouble"), exception_line("not a standard exception")}));
    plug(device_path);
    EXPECT_EQ(take_events(), std::vector<Event>{plugged});
}

void throw_error(SysPowerEventType)
{
    throw std::runtime_error("power trouble");
}

TEST_F(Notifier_events_test, a_power_subscriber_that_throws_harms_nobody)
{
    ASSERT_TRUE(SubscribeToPowerEvent(throw_error));
    ASSERT_TRUE(SubscribeToPowerEvent(record_power<1>));
    EXPECT_EQ(sleep(), 0);
    EXPECT_EQ(captured_log::take(), captured_log::Lines{exception_line("power trouble")});
    EXPECT_TRUE(UnsubscribeToPowerEvent(throw_error));
    EXPECT_EQ(resume(), 0);
    EXPECT_EQ(take_events(), (std::vector<Event>{power(1, SysPowerSleep), power(1, SysPowerResume)}));
}

}  // namespace
