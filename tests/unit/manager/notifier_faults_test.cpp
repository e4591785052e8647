// Sessions whose notification service does not come up, or is held up.
#include "manager_test.h"
#include "vyra/notify.h"
#include "win32_double/control.h"

using namespace manager_tests;
using kvs::brenvozulta::power_handler;
using ::testing::ElementsAre;

namespace {

class Notifier_faults_test : public Manager_test {
protected:
    void TearDown() override
    {
        win32_double::clear();
        Manager_test::TearDown();
    }

    // The session is as good as any other, but for the system's broadcasts.
    void expect_a_session_without_window(const std::string& line)
    {
        ASSERT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_OK);
        EXPECT_TRUE(wait_for_message(line.substr(0, line.size() - 2)));
        EXPECT_EQ(take_log(), Lines{line});
        EXPECT_EQ(find_window(), nullptr);
        EXPECT_EQ(open(), 0U);
        plug(scanner_2);
        EXPECT_THAT(take_host_events(), ElementsAre(Host_event{5, scanner_2, 1}));
        EXPECT_EQ(take_log(), plug_lines(scanner_2));
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
        EXPECT_FALSE(UnsubscribeToPowerEvent(power_handler));
        win32_double::clear();
        initialize();
        EXPECT_NE(wait_for_window(), nullptr) << "the next session has its window";
    }
};

}  // namespace

TEST_F(Notifier_faults_test, a_window_that_cannot_be_created_does_not_fail_the_session)
{
    win32_double::fail("CreateWindowExA", win32_double::always);
    expect_a_session_without_window("Exception : Could not create message window!\r\n");
}

TEST_F(Notifier_faults_test, a_refused_registration_does_not_fail_the_session)
{
    win32_double::fail("RegisterDeviceNotificationA", win32_double::always);
    expect_a_session_without_window("Exception : Could not register for devicenotifications!\r\n");
}

// A sleep that comes while the notifier is being stopped finds nobody to tell.
TEST_F(Notifier_faults_test, the_power_subscription_ends_before_the_notifier)
{
    initialize();
    ASSERT_NE(wait_for_window(), nullptr);
    Busy_usb_subscriber subscriber;
    const auto sent = win32_double::calls("SendMessageA");
    auto terminating = std::async(std::launch::async, [] { return VyraTerminate(); });
    EXPECT_TRUE(becomes_true([=] { return win32_double::calls("SendMessageA") > sent; })) << "it closes the window";
    EXPECT_FALSE(UnsubscribeToPowerEvent(power_handler));
    subscriber.release();
    EXPECT_EQ(terminating.get(), VYRA_OK);
}
