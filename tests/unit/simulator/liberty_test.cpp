// What a driver may do and a kind one does not: handles that come again, second calls that are refused, images and
// events at any moment, calls that return late, stops that wait.
#include <future>

#include "driver_stage.h"

namespace simulator_test {
namespace {

class Liberty_test : public Driver_test {
protected:
    static void add(std::int32_t moment, const char* function, std::int32_t what, const char* who,
                    std::uint32_t late_ms = 0)
    {
        brenvozulta_sim_happening happening{};
        happening.moment = moment;
        happening.function = function;
        happening.count = 1;
        happening.what = what;
        happening.scanner = who;
        happening.late_ms = late_ms;
        ASSERT_TRUE(brenvozulta_sim_add_happening(&happening));
    }

    static void add_image(std::int32_t moment, const char* function, const brenvozulta_sim_image& image)
    {
        brenvozulta_sim_happening happening{};
        happening.moment = moment;
        happening.function = function;
        happening.count = 1;
        happening.what = BRENVOZULTA_SIM_IMAGE;
        happening.image = &image;
        ASSERT_TRUE(brenvozulta_sim_add_happening(&happening));
    }

    static void listen()
    {
        initialize();
        ASSERT_EQ(QXDR_SetListenerCallbackHotPlug(Listener::listen), 0U);
    }

    static std::size_t images_now() { return Host::images().size(); }

    const std::vector<std::uint8_t> pixels_{1, 2, 3, 4, 5, 6};
    const brenvozulta_sim_image image_ = small_image(pixels_, 3);
};

TEST_F(Liberty_test, the_handle_of_a_scanner_that_is_gone_and_closed_can_come_again)
{
    ASSERT_TRUE(brenvozulta_sim_set_handle_reuse(BRENVOZULTA_SIM_REUSE_AFTER_CLOSE));
    initialize();
    void* first = open();
    void* const opened = first;
    ASSERT_TRUE(brenvozulta_sim_remove(scanner));
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    EXPECT_NE(brenvozulta_sim_handle("second"), opened) << "the host still holds it";
    EXPECT_EQ(QXDR_CloseDevice(&first), 4U);
    ASSERT_TRUE(brenvozulta_sim_attach("third"));
    EXPECT_EQ(brenvozulta_sim_handle("third"), opened);
    DriverDeviceEntry entry{};
    EXPECT_EQ(QXDR_GetUsbInfo(opened, &entry), 0U);
    EXPECT_STREQ(entry.name, "third");
    ASSERT_TRUE(brenvozulta_sim_attach(scanner));
    EXPECT_NE(brenvozulta_sim_handle(scanner), opened);
}

TEST_F(Liberty_test, the_handle_of_a_scanner_that_was_not_open_comes_again_with_the_next)
{
    ASSERT_TRUE(brenvozulta_sim_set_handle_reuse(BRENVOZULTA_SIM_REUSE_AFTER_CLOSE));
    void* const first = brenvozulta_sim_handle(scanner);
    ASSERT_TRUE(brenvozulta_sim_remove(scanner));
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    EXPECT_EQ(brenvozulta_sim_handle("second"), first);
}

TEST_F(Liberty_test, a_release_closes_the_handles_of_scanners_that_are_gone)
{
    ASSERT_TRUE(brenvozulta_sim_set_handle_reuse(BRENVOZULTA_SIM_REUSE_AFTER_CLOSE));
    initialize();
    void* const first = open();
    ASSERT_TRUE(brenvozulta_sim_remove(scanner));
    EXPECT_EQ(QXDR_Release(), 0U);
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    EXPECT_EQ(brenvozulta_sim_handle("second"), first);
}

TEST_F(Liberty_test, a_handle_can_come_again_while_the_host_still_holds_it)
{
    load(R"({"reuse_handles": "at_once", "frame_rate": 0})");
    initialize();
    void* const first = open();
    ASSERT_TRUE(brenvozulta_sim_remove(scanner));
    ASSERT_TRUE(brenvozulta_sim_attach("second"));
    EXPECT_EQ(brenvozulta_sim_handle("second"), first);
    DriverDeviceInfo info{};
    EXPECT_EQ(QXDR_GetDeviceInfo(first, &info), 19U) << "it is the second scanner's, which is not open";
    EXPECT_FALSE(brenvozulta_sim_set_handle_reuse(3));
    EXPECT_FALSE(brenvozulta_sim_set_handle_reuse(-1));
}

TEST_F(Liberty_test, a_second_initialize_can_be_refused)
{
    load(R"({"reinitialize_result": 2})");
    initialize();
    EXPECT_EQ(QXDR_Initialize(), 2U);
    EXPECT_EQ(QXDR_Release(), 0U) << "the first one holds";
    initialize();
}

TEST_F(Liberty_test, a_second_open_can_be_refused)
{
    load(R"({"reopen_result": 19})");
    initialize();
    void* handle = open();
    void* again = nullptr;
    EXPECT_EQ(QXDR_OpenDevice(scanner, &again), 19U);
    EXPECT_EQ(again, nullptr);
    EXPECT_EQ(QXDR_CloseDevice(&handle), 0U);
    open();
}

TEST_F(Liberty_test, an_image_can_come_before_the_start_of_the_capture_has_returned)
{
    load(R"({"frame_rate": 0, "timeline": [{"on_return": {"function": "QXDR_StartCapture"},
                                            "image": {"width": 3, "height": 2}}]})");
    initialize();
    ASSERT_TRUE(brenvozulta_sim_block_return("QXDR_StartCapture"));
    auto host = std::async(std::launch::async, [] { start_capture(); });
    ASSERT_TRUE(brenvozulta_sim_wait_blocked("QXDR_StartCapture", 1, patience_ms));
    ASSERT_EQ(images_now(), 1U);
    const Received_image image = Host::images().at(0);
    EXPECT_EQ(image.width, 3);
    EXPECT_EQ(image.height, 2);
    EXPECT_EQ(image.pixels, std::vector<std::uint8_t>(6, 128));
    EXPECT_NE(image.thread, brenvozulta_sim_thread_id());
    ASSERT_TRUE(brenvozulta_sim_unblock("QXDR_StartCapture"));
    host.get();
}

TEST_F(Liberty_test, a_call_does_not_wait_for_ever_for_a_callback_that_its_image_has_parked)
{
    brenvozulta_sim_set_stop_patience(1);
    Host::park();
    add_image(BRENVOZULTA_SIM_ON_RETURN, "QXDR_StartCapture", image_);
    initialize();
    start_capture();
    EXPECT_EQ(brenvozulta_sim_callbacks_inside(), 1U);
}

TEST_F(Liberty_test, an_image_can_come_after_a_stop_and_after_a_close)
{
    add_image(BRENVOZULTA_SIM_AFTER_CALL, "QXDR_StopCapture", image_);
    add_image(BRENVOZULTA_SIM_AFTER_CALL, "QXDR_CloseDevice", image_);
    initialize();
    void* handle = start_capture();
    EXPECT_EQ(QXDR_StopCapture(handle), 0U);
    EXPECT_TRUE(brenvozulta_sim_wait_callbacks_returned(1, patience_ms));
    EXPECT_EQ(QXDR_CloseDevice(&handle), 0U);
    EXPECT_TRUE(brenvozulta_sim_wait_callbacks_returned(2, patience_ms));
    EXPECT_EQ(Host::images().at(1).pixels, pixels_);
}

TEST_F(Liberty_test, an_event_can_come_inside_a_call_on_the_callers_thread)
{
    add(BRENVOZULTA_SIM_ON_ENTRY, "QXDR_OpenDevice", BRENVOZULTA_SIM_PLUG, "second");
    add(BRENVOZULTA_SIM_ON_RETURN, "QXDR_OpenDevice", BRENVOZULTA_SIM_UNPLUG, scanner);
    listen();
    void* const first = brenvozulta_sim_handle(scanner);
    void* const handle = open();
    EXPECT_EQ(handle, first) << "it was there when it was opened";
    const auto events = Listener::events();
    ASSERT_EQ(events.size(), 2U) << "told before the call has returned";
    EXPECT_EQ(events[0].code, driver_event_plugged);
    EXPECT_EQ(events[0].driver_handle, brenvozulta_sim_handle("second"));
    EXPECT_EQ(events[1].code, driver_event_unplugged);
    EXPECT_EQ(events[1].driver_handle, first);
    for (const Received_event& event : events) {
        EXPECT_EQ(event.thread, brenvozulta_sim_thread_id());
    }
    EXPECT_FALSE(brenvozulta_sim_is_attached(scanner));
}

TEST_F(Liberty_test, what_happens_on_entry_comes_before_the_work)
{
    load(R"({"frame_rate": 0, "timeline": [{"on_entry": {"function": "QXDR_OpenDevice", "count": 2},
                                            "unplug": "RQ7-3050 #1"}]})");
    listen();
    open();
    EXPECT_TRUE(Listener::events().empty());
    void* handle = nullptr;
    EXPECT_EQ(QXDR_OpenDevice(scanner, &handle), 5U);
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged));
}

TEST_F(Liberty_test, an_event_on_the_entry_of_a_release_comes_before_the_silence)
{
    add(BRENVOZULTA_SIM_ON_ENTRY, "QXDR_Release", BRENVOZULTA_SIM_UNPLUG, scanner);
    listen();
    EXPECT_EQ(QXDR_Release(), 0U);
    EXPECT_THAT(Listener::codes(), testing::ElementsAre(driver_event_unplugged));
}

TEST_F(Liberty_test, an_event_can_come_late_when_its_handle_is_another_scanners)
{
    load(R"({"reuse_handles": "at_once", "frame_rate": 0,
             "timeline": [{"on_return": {"function": "QXDR_OpenDevice"}, "unplug": "RQ7-3050 #1", "late_ms": 1},
                          {"on_return": {"function": "QXDR_OpenDevice"}, "plug": "second", "new": true}]})");
    listen();
    Listener::hold([](const Received_event& event) { return event.code == driver_event_plugged; });
    auto opening = std::async(std::launch::async, [] { return open(); });
    ASSERT_TRUE(brenvozulta_sim_wait_listener_inside(1, patience_ms));
    ASSERT_TRUE(brenvozulta_sim_wait_events_delivered(1, patience_ms)) << "the late one";
    Listener::release();
    void* const first = opening.get();
    const auto events = Listener::events();
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].code, driver_event_plugged);
    EXPECT_EQ(events[0].driver_handle, first);
    EXPECT_EQ(events[1].code, driver_event_unplugged);
    EXPECT_EQ(events[1].driver_handle, first);
    EXPECT_TRUE(brenvozulta_sim_is_attached("second"));
}

TEST_F(Liberty_test, images_can_be_null_or_empty_or_of_another_size)
{
    load(R"({"frame_rate": 0, "timeline": [
        {"after_call": {"function": "QXDR_StartCapture"}, "image": {"width": 65535, "height": 65535, "null": true}},
        {"after_call": {"function": "QXDR_StartCapture"}, "image": {"width": 0, "height": 1500}},
        {"after_call": {"function": "QXDR_StartCapture"}, "image": {"width": 7, "height": 1}}]})");
    initialize();
    start_capture();
    ASSERT_TRUE(brenvozulta_sim_wait_callbacks_returned(3, patience_ms));
    const auto images = Host::images();
    EXPECT_EQ(images[0].width, 65535);
    EXPECT_EQ(images[0].height, 65535);
    EXPECT_TRUE(images[0].pixels.empty()) << "null";
    EXPECT_EQ(images[1].width, 0);
    EXPECT_EQ(images[1].height, 1500);
    EXPECT_EQ(images[2].pixels.size(), 7U);
}

TEST_F(Liberty_test, a_call_can_return_late_after_its_work)
{
    ASSERT_TRUE(brenvozulta_sim_block_return("QXDR_Initialize"));
    auto host = std::async(std::launch::async, QXDR_Initialize);
    ASSERT_TRUE(brenvozulta_sim_wait_blocked("QXDR_Initialize", 1, patience_ms));
    EXPECT_EQ(QXDR_Release(), 0U) << "its work is done";
    brenvozulta_sim_call call{};
    ASSERT_TRUE(brenvozulta_sim_get_call(0, &call));
    EXPECT_FALSE(call.finished);
    ASSERT_TRUE(brenvozulta_sim_unblock("QXDR_Initialize"));
    EXPECT_EQ(host.get(), 0U);
}

// Whose work gives way to others, as a stop's does, so that they look too early.
TEST_F(Liberty_test, who_waits_for_a_call_to_be_held_before_its_return_is_told)
{
    initialize();
    void* const handle = start_capture();
    ASSERT_TRUE(brenvozulta_sim_block_return("QXDR_StopCapture"));
    auto held =
        std::async(std::launch::async, [] { return brenvozulta_sim_wait_blocked("QXDR_StopCapture", 1, patience_ms); });
    EXPECT_EQ(held.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    auto host = std::async(std::launch::async, QXDR_StopCapture, handle);
    EXPECT_EQ(held.wait_for(std::chrono::milliseconds(patience_ms / 2)), std::future_status::ready);
    EXPECT_TRUE(held.get());
    ASSERT_TRUE(brenvozulta_sim_unblock("QXDR_StopCapture"));
    EXPECT_EQ(host.get(), 0U);
}

TEST_F(Liberty_test, a_call_whose_return_is_delayed_takes_no_less)
{
    load(R"({"faults": [{"function": "QXDR_Initialize", "return_delay_ms": 30}]})");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(QXDR_Initialize(), 0U);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
    ASSERT_TRUE(brenvozulta_sim_set_return_delay("QXDR_Initialize", 0));
    EXPECT_FALSE(brenvozulta_sim_set_return_delay("QXDR_Nothing", 0));
    EXPECT_FALSE(brenvozulta_sim_block_return("QXDR_Nothing"));
}

// A close or a release that waits for the callback under way, however long that takes.
class Waiting_test : public Liberty_test, public testing::WithParamInterface<const char*> {
protected:
    static std::uint32_t make_call(void* handle)
    {
        const std::string function = GetParam();
        return function == "QXDR_Release"       ? QXDR_Release()
               : function == "QXDR_CloseDevice" ? QXDR_CloseDevice(&handle)
                                                : QXDR_StopCapture(handle);
    }
};

TEST_P(Waiting_test, waits_for_the_callback_under_way)
{
    load(R"({"frame_rate": 0, "stop_patience_ms": "unlimited"})");
    initialize();
    void* const handle = start_capture();
    Host::park();
    ASSERT_TRUE(brenvozulta_sim_wait_delivery_begun(brenvozulta_sim_deliver_async(&image_), patience_ms));
    auto returned_before = std::async(std::launch::async, [handle] {
        EXPECT_EQ(make_call(handle), 0U);
        return brenvozulta_sim_callbacks_returned();
    });
    ASSERT_TRUE(brenvozulta_sim_wait_called(GetParam(), 1, patience_ms));
    // Longer than the patience that it has by default.
    EXPECT_EQ(returned_before.wait_for(std::chrono::milliseconds(150)), std::future_status::timeout);
    Host::release();
    EXPECT_EQ(returned_before.get(), 1U);
    EXPECT_EQ(brenvozulta_sim_acquisition_threads(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Stops, Waiting_test, testing::Values("QXDR_StopCapture", "QXDR_CloseDevice", "QXDR_Release"),
                         [](const auto& name) { return std::string(name.param); });

TEST_F(Liberty_test, a_callback_that_stops_its_own_capture_is_not_waited_for)
{
    initialize();
    brenvozulta_sim_set_stop_patience(BRENVOZULTA_SIM_UNLIMITED);
    void* handle = start_capture();
    ASSERT_EQ(QXDR_SetCallbackAcquisition(
                  [](const std::uint8_t*, std::uint16_t, std::uint16_t, void* context) {
                      return static_cast<std::int32_t>(QXDR_StopCapture(context)) + 7;
                  },
                  handle),
              0U);
    std::int32_t result = 0;
    ASSERT_TRUE(brenvozulta_sim_deliver(&image_, patience_ms, &result));
    EXPECT_EQ(result, 7);
}

TEST_F(Liberty_test, happenings_are_checked)
{
    brenvozulta_sim_happening good{};
    good.moment = BRENVOZULTA_SIM_ON_ENTRY;
    good.function = "QXDR_OpenDevice";
    good.count = 1;
    good.what = BRENVOZULTA_SIM_UNPLUG;
    good.scanner = scanner;
    EXPECT_TRUE(brenvozulta_sim_add_happening(&good));
    EXPECT_FALSE(brenvozulta_sim_add_happening(nullptr));
    const auto refused = [&good](auto change) {
        brenvozulta_sim_happening bad = good;
        change(bad);
        return brenvozulta_sim_add_happening(&bad) == 0;
    };
    using Happening = brenvozulta_sim_happening;
    EXPECT_TRUE(refused([](Happening& bad) { bad.moment = 3; }));
    EXPECT_TRUE(refused([](Happening& bad) { bad.function = nullptr; }));
    EXPECT_TRUE(refused([](Happening& bad) { bad.function = "QXDR_Nothing"; }));
    EXPECT_TRUE(refused([](Happening& bad) { bad.count = 0; }));
    EXPECT_TRUE(refused([](Happening& bad) { bad.at_ms = 1; }));
    EXPECT_TRUE(refused([](Happening& bad) { bad.what = 3; }));
    EXPECT_TRUE(refused([](Happening& bad) { bad.what = BRENVOZULTA_SIM_IMAGE; }));
    EXPECT_TRUE(refused([](Happening& bad) { bad.scanner = ""; }));
}

}  // namespace
}  // namespace simulator_test
