// What the C++ objects tell their host: scanners, sleep, USB devices, LEDs.
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sdk/wrapper_stage.h"
#include "support/broadcasts.h"

namespace {

using namespace std::chrono_literals;
using test_support::default_scanner;
using test_support::other_scanner;
using test_support::patience;
using test_support::patience_ms;
using ::testing::ElementsAre;

class Wrapper_events_test : public test_support::Wrapper_stage {
protected:
    static void plug()
    {
        ASSERT_EQ(brenvozulta_sim_plug(default_scanner), 1);
        ASSERT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    }

    static void sleep_and_resume()
    {
        const HWND window = test_support::wait_for_window();
        test_support::send_power_event(PBT_APMSUSPEND, window);
        test_support::send_power_event(PBT_APMRESUMESUSPEND, window);
    }
};

TEST_F(Wrapper_events_test, subscribers_are_told_of_scanners_until_they_end)
{
    vyra::library library;
    std::vector<std::string> told;
    {
        const vyra::device_subscription events(library, [&](const char* name, bool plugged) {
            told.push_back(std::string(name) + (plugged ? " comes" : " goes"));
        });
        unplug();
        ASSERT_EQ(brenvozulta_sim_plug(default_scanner), 1);
        ASSERT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    }
    unplug();
    EXPECT_THAT(told, ElementsAre("RQ7-3050 #1 goes", "RQ7-3050 #1 comes"));
}

TEST_F(Wrapper_events_test, end_of_a_subscription_waits_for_a_call_under_way)
{
    vyra::library library;
    std::promise<void> entered;
    std::promise<void> leave;
    std::atomic<bool> left{false};
    auto events = std::make_unique<vyra::device_subscription>(library, [&](const char*, bool) {
        entered.set_value();
        leave.get_future().wait();
        left = true;
    });
    ASSERT_EQ(brenvozulta_sim_unplug(default_scanner), 1);
    entered.get_future().wait();
    auto ending = std::async(std::launch::async, [&] {
        events.reset();
        return left.load();
    });
    EXPECT_EQ(ending.wait_for(20ms), std::future_status::timeout);
    leave.set_value();
    EXPECT_TRUE(ending.get());
    ASSERT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
}

TEST_F(Wrapper_events_test, subscriber_may_end_its_own_subscription)
{
    vyra::library library;
    std::optional<vyra::device_subscription> events;
    std::string told(100, 'x');
    events.emplace(library, [&events, &told, name = std::string(100, 'y')](const char*, bool) {
        events.reset();
        told = name;  // which lives as long as this call
    });
    unplug();
    EXPECT_EQ(told, std::string(100, 'y'));
    plug();
}

TEST_F(Wrapper_events_test, subscriber_may_end_the_subscription_of_another)
{
    vyra::library library;
    int told = 0;
    std::optional<vyra::device_subscription> second;
    const vyra::device_subscription first(library, [&](const char*, bool) { second.reset(); });
    second.emplace(library, [&](const char*, bool) { ++told; });
    unplug();
    EXPECT_EQ(told, 0);
}

TEST_F(Wrapper_events_test, sleep_and_resume_are_told)
{
    vyra::library library;
    std::vector<bool> told;
    const vyra::power_subscription power(library, [&](bool asleep) { told.push_back(asleep); });
    sleep_and_resume();
    EXPECT_THAT(told, ElementsAre(true, false));
}

TEST_F(Wrapper_events_test, usb_devices_are_told_by_their_pair)
{
    vyra::library library;
    std::vector<bool> told;
    const vyra::usb_subscription usb(library, 0x1234, 0x00AB, [&](bool arrived) { told.push_back(arrived); });
    const HWND window = test_support::wait_for_window();
    const auto device = R"(\\?\USB#VID_1234&PID_00AB#7#{a5dcbf10-6530-11d2-901f-00c04fb951ed})";
    test_support::send_device_change(DBT_DEVICEARRIVAL, device, window);
    test_support::send_device_change(DBT_DEVICEREMOVECOMPLETE, device, window);
    EXPECT_THAT(told, ElementsAre(true, false));
    EXPECT_THROW(vyra::usb_subscription(library, 0x1234, 0x00AB, [](bool) {}), vyra::error) << "one for a pair";
}

TEST_F(Wrapper_events_test, led_commands_are_told_of_their_scanner)
{
    ASSERT_EQ(brenvozulta_sim_attach(other_scanner), 1);
    vyra::library library;
    vyra::scanner scanner(library, default_scanner);
    vyra::scanner other(library, other_scanner);
    int told = 0;
    DevUI leds = {};
    {
        const vyra::led_subscription events(scanner, [&] { ++told; });
        const vyra::led_subscription others(other, [&] { told += 10; });
        leds.group_a_on = 1;
        scanner.show(leds);
        EXPECT_EQ(told, 1);
        scanner.show(leds);
        EXPECT_EQ(told, 1) << "the same again is no command";
        other.show(leds);
        EXPECT_EQ(told, 11);
    }
    leds.group_a_on = 0;
    scanner.show(leds);
    EXPECT_EQ(told, 11);
    other.close();
    EXPECT_EQ(code_of([&] { vyra::led_subscription(other, [] {}); }), VYRA_BAD_SCANNER_IDX);
}

TEST_F(Wrapper_events_test, watch_sees_each_change_once_and_misses_none)
{
    vyra::library library;
    vyra::change_watch watch(library);
    vyra::change_watch another(library);
    EXPECT_FALSE(watch.wait(0ms));
    unplug();
    EXPECT_TRUE(watch.wait(0ms)) << "what came while nobody waited";
    EXPECT_FALSE(watch.wait(1ms));
    EXPECT_TRUE(another.wait(0ms)) << "each sees it";
    auto waiting = std::async(std::launch::async, [&] { return watch.wait(std::chrono::milliseconds::max()); });
    plug();
    ASSERT_EQ(waiting.wait_for(patience), std::future_status::ready);
    EXPECT_TRUE(waiting.get());
    sleep_and_resume();
    EXPECT_TRUE(watch.wait(0ms));
}

TEST_F(Wrapper_events_test, watch_ends_with_its_stop)
{
    vyra::library library;
    vyra::change_watch watch(library);
    vyra::stop_signal stop;
    auto waiting = std::async(std::launch::async, [&] { return watch.wait(std::chrono::hours(1), stop); });
    EXPECT_EQ(waiting.wait_for(1ms), std::future_status::timeout);
    stop.request();
    ASSERT_EQ(waiting.wait_for(patience), std::future_status::ready);
    EXPECT_FALSE(waiting.get());
}

// What the library or the driver holds the address of stays where it is.
template <class... Objects>
constexpr bool stays_where_it_is = (!(std::is_move_constructible_v<Objects> || std::is_copy_constructible_v<Objects> ||
                                      std::is_move_assignable_v<Objects> || std::is_copy_assignable_v<Objects>)&&...);
static_assert(
    stays_where_it_is<vyra::library, vyra::scanner, vyra::video, vyra::device_subscription, vyra::power_subscription,
                      vyra::usb_subscription, vyra::led_subscription, vyra::change_watch, vyra::stop_signal>);

}  // namespace
