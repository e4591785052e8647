// watch.
#include <regex>
#include <sstream>

#include "in_process.h"
#include "interrupt.h"
#include "status_watch.h"
#include "support/broadcasts.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::HasSubstr;

constexpr const char* unplug_and_plug =
    R"({"timeline": [{"after_call": {"function": "QXDR_OpenDevice"}, "unplug": "RQ7-3050 #1"},
                     {"after_call": {"function": "QXDR_OpenDevice"}, "at_ms": 50, "plug": "RQ7-3050 #1"},
                     {"after_call": {"function": "QXDR_OpenDevice"}, "at_ms": 200, "plug": "Other", "new": true},
                     {"after_call": {"function": "QXDR_OpenDevice"}, "at_ms": 250, "unplug": "Other"}]})";

class Watch_test : public Tool_test {
protected:
    // Reads the lines that watch printed as objects, in order.
    static std::vector<Json> objects(const std::string& text)
    {
        std::vector<Json> all;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            all.push_back(Json::parse(line, nullptr, false));
            EXPECT_TRUE(all.back().is_object()) << line;
        }
        return all;
    }

    // The events about a scanner, in order, as "plug", "status 9005" and so on.
    static std::vector<std::string> about(const std::vector<Json>& events, const std::string& scanner, bool status)
    {
        std::vector<std::string> all;
        for (const Json& event : events) {
            if (event.value("scanner", "") == scanner && (event["event"] == "status") == status) {
                all.push_back(status ? "status " + event["code"].dump() : event["event"].get<std::string>());
            }
        }
        return all;
    }
};

TEST_F(Watch_test, prints_plug_unplug_and_status_as_they_happen)
{
    use_scenario_text(unplug_and_plug);
    Child_process child(tool({"watch"}), environment());
    for (const char* line :
         {"Z  unplug  RQ7-3050 #1\n", "Z  status  RQ7-3050 #1  9005 VYRA_DEVICE_UNAVAIL (", "Z  plug  RQ7-3050 #1\n",
          "Z  status  RQ7-3050 #1  0 VYRA_OK (success)\n", "Z  plug  Other\n", "Z  unplug  Other\n"}) {
        EXPECT_TRUE(child.wait_for_output(line)) << line << "is missing in\n" << child.out() << child.err();
    }
    child.interrupt();
    EXPECT_EQ(child.wait(), 0);
    // std::regex, because GoogleTest's own expressions know no sets on Windows.
    EXPECT_TRUE(std::regex_search(child.out(), std::regex("^[0-9]{4}-[01][0-9]-[0-3][0-9]T[0-9:]{8}\\.[0-9]{3}Z  ")));
}

TEST_F(Watch_test, as_json_one_object_a_line)
{
    use_scenario_text(unplug_and_plug);
    Child_process child(tool({"watch", "--json"}), environment());
    EXPECT_TRUE(child.wait_for_output("\"event\":\"unplug\",\"scanner\":\"Other\"}\n")) << child.out() << child.err();
    EXPECT_TRUE(child.wait_for_output("\"code\":0"));
    child.interrupt();
    EXPECT_EQ(child.wait(), 0);
    const std::vector<Json> events = objects(child.out());
    EXPECT_EQ(about(events, "RQ7-3050 #1", false), (std::vector<std::string>{"attached", "unplug", "plug"}));
    EXPECT_EQ(about(events, "RQ7-3050 #1", true), (std::vector<std::string>{"status 9005", "status 0"}));
    EXPECT_EQ(about(events, "Other", false), (std::vector<std::string>{"plug", "unplug"}));
    EXPECT_EQ(about(events, "Other", true), std::vector<std::string>{});
}

TEST_F(Watch_test, waits_for_a_scanner_and_then_watches_its_status)
{
    use_scenario_text(R"({"scanners": [],
                          "timeline": [{"after_call": {"function": "QXDR_GetDevicesList", "count": 2}, "at_ms": 200,
                                        "plug": "Late", "new": true},
                                       {"after_call": {"function": "QXDR_OpenDevice"}, "unplug": "Late"}]})");
    Child_process child(tool({"watch"}), environment());
    EXPECT_TRUE(child.wait_for_error("no scanner is attached yet"));
    EXPECT_TRUE(child.wait_for_error("waiting for a scanner to be plugged in"));
    EXPECT_TRUE(child.wait_for_output("status  Late  9005")) << child.out();
    child.interrupt();
    EXPECT_EQ(child.wait(), 0);
}

class Watch_in_process_test : public In_process_test {};

TEST_F(Watch_in_process_test, prints_sleep_resume_and_subscribed_usb_devices)
{
    Background_run run({"watch", "--usb", "1A2B:00ff", "--usb", "1A2B:100"});
    ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_OpenDevice", 1, test_support::patience_ms), 1);
    ASSERT_NE(test_support::wait_for_window(), nullptr);
    test_support::send_power_event(PBT_APMSUSPEND);
    test_support::send_power_event(PBT_APMRESUMESUSPEND);
    test_support::send_device_change(DBT_DEVICEARRIVAL, R"(\\?\USB#VID_1A2B&PID_00FF#1)");
    test_support::send_device_change(DBT_DEVICEARRIVAL, R"(\\?\USB#VID_1A2B&PID_0101#1)");
    test_support::send_device_change(DBT_DEVICEREMOVECOMPLETE, R"(\\?\USB#VID_1A2B&PID_0100#1)");
    vyra_tool::request_interrupt();
    const Result result = run.finish();
    EXPECT_EQ(result.code, 0);
    std::string events = result.out;  // without times
    for (std::size_t at = 0;
         (at = events.find("20", at)) != std::string::npos && events.find("Z  ", at) != std::string::npos;) {
        events.erase(at, events.find("Z  ", at) + 3 - at);
        at = events.find('\n', at) + 1;
    }
    EXPECT_EQ(events, "attached  RQ7-3050 #1\nsleep\nresume\nusb-plug  1A2B:00FF\nusb-unplug  1A2B:0100\n");
}

TEST_F(Watch_in_process_test, closes_its_scanner_at_the_end)
{
    Background_run run({"watch"});
    ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_OpenDevice", 1, test_support::patience_ms), 1);
    vyra_tool::request_interrupt();
    EXPECT_EQ(run.finish().code, 0);
    const std::vector<std::string> calls = take_driver_calls();
    ASSERT_GE(calls.size(), 2U);
    EXPECT_EQ((std::vector<std::string>{calls.end() - 2, calls.end()}),
              (std::vector<std::string>{"QXDR_CloseDevice", "QXDR_Release"}));
}

TEST_F(Watch_in_process_test, goes_on_without_status_when_the_scanner_cannot_be_opened)
{
    ASSERT_EQ(brenvozulta_sim_fail("QXDR_OpenDevice", 2, 1), 1);
    Background_run run({"watch", "--json"});
    ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_OpenDevice", 1, test_support::patience_ms), 1);
    ASSERT_EQ(brenvozulta_sim_plug("Other"), 1);
    ASSERT_EQ(brenvozulta_sim_wait_events_done(test_support::patience_ms), 1);
    vyra_tool::request_interrupt();
    const Result result = run.finish();
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("\"event\":\"plug\",\"scanner\":\"Other\""));
}

TEST_F(Watch_in_process_test, opens_nothing_when_it_is_told_so)
{
    ASSERT_EQ(brenvozulta_sim_attach("Other"), 1);
    Background_run run({"watch", "--no-open", "--json"});
    ASSERT_NE(test_support::wait_for_window(), nullptr);
    ASSERT_EQ(brenvozulta_sim_wait_returned("QXDR_GetDevicesList", 2, test_support::patience_ms), 1);
    ASSERT_EQ(brenvozulta_sim_unplug("Other"), 1);
    ASSERT_EQ(brenvozulta_sim_plug("Other"), 1);
    ASSERT_EQ(brenvozulta_sim_wait_events_done(test_support::patience_ms), 1);
    vyra_tool::request_interrupt();
    const Result result = run.finish();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(brenvozulta_sim_times_called("QXDR_OpenDevice"), 0U);
    std::vector<std::string> events;
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);) {
        const Json event = Json::parse(line);
        events.push_back(event["event"].get<std::string>() + " " + event["scanner"].get<std::string>());
    }
    EXPECT_EQ(events,
              (std::vector<std::string>{"attached RQ7-3050 #1", "attached Other", "unplug Other", "plug Other"}));
}

TEST_F(Watch_in_process_test, a_clock_that_is_set_back_does_not_hide_a_return)
{
    const vyra_tool::Library library(VYRA_LOG_OFF);
    vyra_tool::Event_queue queue;
    vyra_tool::Status_watch status(library, queue);
    vyra_tool::Event plug{vyra_tool::Event::Kind::plug, BRENVOZULTA_SIM_DEFAULT_SCANNER};
    status.open(BRENVOZULTA_SIM_DEFAULT_SCANNER);
    EXPECT_FALSE(status.calls_for_opening(plug, "")) << "it came before";
    plug = {vyra_tool::Event::Kind::plug, BRENVOZULTA_SIM_DEFAULT_SCANNER};
    plug.time -= std::chrono::hours(1);
    EXPECT_TRUE(status.calls_for_opening(plug, ""));
}

}  // namespace
}  // namespace tool_tests
