// What window procedures of the host may do while a change of the session waits with them at work.
#include "manager_test.h"
#include "support/host_window.h"
#include "vyra/notify.h"

using namespace manager_tests;
using test_support::Host_window;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr std::int32_t not_called = -1;

// The statuses of the calls that the window procedure made.
struct Nested {
    std::int32_t initialize = not_called;
    std::int32_t terminate = not_called;
    std::int32_t list = not_called;
    std::int32_t open = not_called;
    std::uint32_t opened = 7;
    std::int32_t start = not_called;
    std::int32_t close = not_called;
};
Nested nested;

void change_the_session()
{
    nested.initialize = VyraInitialize_N(nullptr, 1, 77);
    nested.terminate = VyraTerminate();
}

void call_everything()
{
    change_the_session();
    std::uint32_t count = 8;
    std::vector<DeviceListRecord> records(count);
    nested.list = VyraGetDeviceList_N(&count, records.data());
    nested.open = VyraOpenDevice(scanner_2, &nested.opened);
    nested.start = VyraBrenvoStartVideo(0, 1, 0);
    nested.close = VyraCloseDevice_N(0);
}

// A power subscriber at work, until the window of the test's thread has handled its message.
class Sending_power_subscriber {
public:
    Sending_power_subscriber()
    {
        entered = std::promise<void>();
        EXPECT_TRUE(SubscribeToPowerEvent(send));
        event_ = std::async(std::launch::async, [] { send_power_event(PBT_APMRESUMESUSPEND); });
        entered.get_future().wait();
    }
    ~Sending_power_subscriber()
    {
        event_.get();
        EXPECT_TRUE(UnsubscribeToPowerEvent(send));
    }
    Sending_power_subscriber(const Sending_power_subscriber&) = delete;
    Sending_power_subscriber& operator=(const Sending_power_subscriber&) = delete;

private:
    static inline std::promise<void> entered;
    static void send(SysPowerEventType)
    {
        entered.set_value();
        Host_window::send();
    }
    std::future<void> event_;
};

class Nested_calls_test : public Manager_test {
protected:
    void SetUp() override
    {
        Manager_test::SetUp();
        nested = {};
    }
};

}  // namespace

TEST_F(Nested_calls_test, inside_a_terminate_are_refused_and_change_nothing)
{
    open_scanners(2);
    ASSERT_EQ(VyraInitialize_N(host_callback, 3, 4'000'000), VYRA_OK);
    open();
    ASSERT_NE(wait_for_window(), nullptr);
    EXPECT_THAT(take_log(), ElementsAre("initialize:    clear current initialized api before the initialize\r\n"));
    const Host_window window(call_everything);
    brenvozulta_sim_clear_calls();
    {
        const Sending_power_subscriber busy;
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
    }
    EXPECT_EQ(nested.initialize, VYRA_INTERNAL);
    EXPECT_EQ(nested.terminate, VYRA_NOT_INITIALIZED);
    EXPECT_EQ(nested.list, VYRA_NOT_INITIALIZED);
    EXPECT_EQ(nested.open, VYRA_NOT_INITIALIZED);
    EXPECT_EQ(nested.opened, VYRA_NO_HANDLE);
    EXPECT_EQ(nested.start, VYRA_NOT_INITIALIZED);
    EXPECT_EQ(nested.close, VYRA_NOT_INITIALIZED);
    // The first line is that of the event which kept the terminate waiting.
    EXPECT_THAT(take_log(), ElementsAre("SET Vyrabrenvozulta IN RESUME MODE\n", error_line("initialize", VYRA_INTERNAL),
                                        error_line("terminate", VYRA_NOT_INITIALIZED),
                                        error_line("get_device_list_N", VYRA_NOT_INITIALIZED),
                                        error_line("open_device", VYRA_NOT_INITIALIZED),
                                        error_line("start_video", VYRA_NOT_INITIALIZED),
                                        error_line("close_device", VYRA_NOT_INITIALIZED)));
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_CloseDevice", "QXDR_Release"));
    EXPECT_EQ(access::callback(), host_callback);
    EXPECT_FALSE(access::initialized());
    EXPECT_EQ(find_window(), nullptr);

    // The next session is like any other.
    initialize();
    EXPECT_EQ(access::open_devices().size(), 0U);
    EXPECT_EQ(open(), 0U);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
}

TEST_F(Nested_calls_test, that_change_the_session_inside_an_initialize_are_refused)
{
    char own_class[] = "VYRABRENVOZULTA";
    ASSERT_TRUE(InitUsbNotifier(own_class));
    ASSERT_NE(wait_for_window(), nullptr);
    const Host_window window(change_the_session);
    {
        const Sending_power_subscriber busy;
        EXPECT_EQ(VyraInitialize_N(host_callback, 3, 0), VYRA_OK);
    }
    EXPECT_EQ(nested.initialize, VYRA_INTERNAL);
    EXPECT_EQ(nested.terminate, VYRA_NOT_INITIALIZED);
    EXPECT_THAT(take_log(),
                ElementsAre(error_line("initialize", VYRA_INTERNAL), error_line("terminate", VYRA_NOT_INITIALIZED)));
    EXPECT_EQ(access::callback(), host_callback);
    EXPECT_TRUE(access::initialized());
    EXPECT_EQ(open(), 0U);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
}
