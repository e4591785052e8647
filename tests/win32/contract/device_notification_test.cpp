#include <gtest/gtest.h>
#include <windows.h>

#include <dbt.h>

#include "recording_window.h"

namespace {

constexpr GUID usb_devices = {0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

class Device_notification_contract_test : public testing::Test {
protected:
    void SetUp() override
    {
        contract::recorder().clear();
        contract::register_recorder_class();
        window_ = contract::create_recorder_window();
        ASSERT_NE(window_, nullptr);
        filter_.dbcc_size = sizeof filter_;
        filter_.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
        filter_.dbcc_classguid = usb_devices;
    }
    void TearDown() override
    {
        DestroyWindow(window_);
        contract::unregister_recorder_class();
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }

    HWND window_ = nullptr;
    DEV_BROADCAST_DEVICEINTERFACE_A filter_{};
};

TEST_F(Device_notification_contract_test, the_records_layout)
{
    EXPECT_EQ(sizeof(DEV_BROADCAST_DEVICEINTERFACE_A), 32U);
    EXPECT_EQ(offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name), 28U);
    EXPECT_EQ(offsetof(DEV_BROADCAST_HDR, dbch_devicetype), 4U);
    EXPECT_EQ(DBT_DEVICEARRIVAL, 0x8000);
    EXPECT_EQ(DBT_DEVICEREMOVECOMPLETE, 0x8004);
}

TEST_F(Device_notification_contract_test, a_window_is_registered_and_unregistered)
{
    const HDEVNOTIFY registered = RegisterDeviceNotificationA(window_, &filter_, DEVICE_NOTIFY_WINDOW_HANDLE);
    ASSERT_NE(registered, nullptr);
    EXPECT_TRUE(UnregisterDeviceNotification(registered));
    EXPECT_FALSE(UnregisterDeviceNotification(nullptr));
}

// Seen under Wine only: Windows documents neither the refusal of this kind nor the error.
TEST_F(Device_notification_contract_test, a_filter_of_another_kind_is_refused)
{
    filter_.dbcc_devicetype = DBT_DEVTYP_VOLUME;
    SetLastError(0);
    EXPECT_EQ(RegisterDeviceNotificationA(window_, &filter_, DEVICE_NOTIFY_WINDOW_HANDLE), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_DATA});
}

TEST_F(Device_notification_contract_test, a_recipient_that_is_no_window_is_refused)
{
    EXPECT_EQ(RegisterDeviceNotificationA(nullptr, &filter_, DEVICE_NOTIFY_WINDOW_HANDLE), nullptr);
}

// Seen under Wine only: the flags are documented, an error for others is not.
TEST_F(Device_notification_contract_test, unknown_flags_are_refused)
{
    SetLastError(0);
    EXPECT_EQ(RegisterDeviceNotificationA(window_, &filter_, 0x80), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

}  // namespace
