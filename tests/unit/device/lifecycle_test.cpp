// Opening and resetting a scanner, and the end of a device.
#include "device/acquisition.h"
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class Lifecycle_test : public Device_test {
protected:
    std::string registration() const
    {
        return "QXDR_SetCallbackAcquisition(callback=" +
               address_text(reinterpret_cast<const void*>(kvs::brenvozulta::on_acquisition)) +
               ", context=" + address_text(const_cast<Lifecycle_test*>(this)->device_address()) + ")";
    }
    const void* device_address() { return &device(); }
};

std::string all_leds_off(std::uint32_t result = 0)
{
    return scanner_call("QXDR_SetLeds", "area=0, pattern=0, on=0, fifth=0", result);
}

TEST_F(Lifecycle_test, construction_and_destruction_touch_neither_driver_nor_log)
{
    EXPECT_FALSE(device().disconnected());
    drop_device();
    EXPECT_THAT(take_calls(), IsEmpty());
}

TEST_F(Lifecycle_test, open_opens_registers_and_switches_the_leds_off)
{
    EXPECT_EQ(device().open(first_scanner, 0), 0);

    EXPECT_EQ(device().driver_handle(), brenvozulta_sim_handle(first_scanner));
    EXPECT_EQ(device().name(), first_scanner);
    EXPECT_EQ(device().video_state(), video_idle);
    EXPECT_THAT(take_calls(), ElementsAre(StartsWith("QXDR_OpenDevice(name=\"RQ7-3050 #1\", driver_handle=0x"),
                                          registration() + " = 0", all_leds_off()));
    EXPECT_EQ(reinterpret_cast<const void*>(brenvozulta_sim_callback()),
              reinterpret_cast<const void*>(kvs::brenvozulta::on_acquisition));
    EXPECT_EQ(brenvozulta_sim_callback_context(), &device());
}

TEST_F(Lifecycle_test, the_open_option_is_not_used)
{
    EXPECT_EQ(device().open(first_scanner, 0xFF), 0);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_OpenDevice", "QXDR_SetCallbackAcquisition", "QXDR_SetLeds"));
}

TEST_F(Lifecycle_test, the_name_reaches_the_driver_up_to_its_terminator)
{
    const std::string name = std::string(first_scanner) + '\0' + "more";
    EXPECT_EQ(device().open(name, 0), 0);
    EXPECT_EQ(device().name(), name);
}

TEST_F(Lifecycle_test, a_refused_open_ends_there_with_the_translated_result)
{
    for (const auto& [result, status] : driver_failures) {
        brenvozulta_sim_fail("QXDR_OpenDevice", result, 1);
        EXPECT_EQ(device().open(first_scanner, 0), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_OpenDevice", result)));
        EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_OpenDevice"));
        EXPECT_EQ(device().start_camera(), 9110);
        EXPECT_THAT(take_log(), ElementsAre(error_line("start_camera", 9110)));
    }
}

TEST_F(Lifecycle_test, a_refused_callback_leaves_the_scanner_open_in_the_driver)
{
    for (const auto& [result, status] : driver_failures) {
        brenvozulta_sim_fail("QXDR_SetCallbackAcquisition", result, 1);
        EXPECT_EQ(device().open(first_scanner, 0), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_SetCallbackAcquisition", result)));
        EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_OpenDevice", "QXDR_SetCallbackAcquisition"));
        EXPECT_EQ(brenvozulta_sim_is_open(first_scanner), 1);
        EXPECT_EQ(device().close(), 9110);
        EXPECT_THAT(take_log(), ElementsAre("close:\t Error: 9110 Error 9110\r\n"));
    }
}

TEST_F(Lifecycle_test, leds_that_cannot_be_switched_off_are_ignored)
{
    for (const auto& failure : driver_failures) {
        brenvozulta_sim_fail("QXDR_SetLeds", failure.result, 1);
        EXPECT_EQ(device().open(first_scanner, 0), 0);
        EXPECT_THAT(take_log(), IsEmpty());
    }
    EXPECT_EQ(device().start_camera(), 0);
}

TEST_F(Lifecycle_test, a_device_whose_open_failed_can_be_opened)
{
    brenvozulta_sim_fail("QXDR_OpenDevice", driver_scanner_gone, 1);
    EXPECT_EQ(device().open("elsewhere", 0), 9005);
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_OpenDevice", 4)));
    EXPECT_EQ(device().open(first_scanner, 0), 0);
    EXPECT_EQ(device().name(), first_scanner);
}

TEST_F(Lifecycle_test, a_later_open_starts_with_fresh_records)
{
    running_device();
    DevUI ui = {};
    ui.group_a_on = 1;
    ASSERT_EQ(device().set_device_ui(&ui), 0);
    device().set_ui_cb([](void*) { FAIL() << "a callback of the earlier open"; }, nullptr);

    EXPECT_EQ(device().open(first_scanner, 0), 0);

    EXPECT_EQ(device().video_state(), video_idle);
    DevUI shown;
    ASSERT_EQ(device().get_device_ui(&shown), 0);
    EXPECT_EQ(std::memcmp(&shown, &(const DevUI&)DevUI{}, sizeof shown), 0);
    EXPECT_EQ(device().set_device_ui(&ui), 0);
}

TEST_F(Lifecycle_test, a_later_open_has_a_queue_without_the_signal_of_the_earlier_one)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    running_device();
    const std::uint64_t delivery = deliver_waiting(image_of(9));
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(result_of(delivery), 0);
    EXPECT_EQ(buffer, image_of(0));
}

TEST_F(Lifecycle_test, opening_a_second_scanner_moves_the_callback_to_it)
{
    brenvozulta_sim_attach(second_scanner);
    open_device();
    brenvozulta_device other;
    EXPECT_EQ(other.open(second_scanner, 0), 0);
    EXPECT_EQ(brenvozulta_sim_callback_context(), &other);
    EXPECT_EQ(other.driver_handle(), brenvozulta_sim_handle(second_scanner));
    EXPECT_EQ(device().driver_handle(), brenvozulta_sim_handle(first_scanner));
}

TEST_F(Lifecycle_test, reset_resets_the_scanner_whatever_the_handle)
{
    open_device();
    brenvozulta_sim_fail("QXDR_ResetDevice", driver_ok, 2);  // accepted, without the restart
    EXPECT_EQ(device().reset(0), 0);
    EXPECT_EQ(device().reset(0xFFFFFFFF), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_ResetDevice"), scanner_call("QXDR_ResetDevice")));
}

TEST_F(Lifecycle_test, a_refused_reset_returns_the_translated_result)
{
    open_device();
    for (const auto& [result, status] : driver_failures) {
        brenvozulta_sim_fail("QXDR_ResetDevice", result, 1);
        EXPECT_EQ(device().reset(0), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_ResetDevice", result)));
    }
    EXPECT_EQ(device().close(), 0);
}

TEST_F(Lifecycle_test, reset_leaves_a_running_video_untouched)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    brenvozulta_sim_fail("QXDR_ResetDevice", driver_ok, 1);

    EXPECT_EQ(device().reset(0), 0);

    EXPECT_EQ(device().video_state(), video_running);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_ResetDevice"));
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(9));
}

TEST_F(Lifecycle_test, a_refused_reset_shows_the_address_of_the_text_as_its_number)
{
    EXPECT_EQ(device().reset(0), 9110);
    EXPECT_THAT(take_log(), ElementsAre(address_line()));
    EXPECT_THAT(take_calls(), IsEmpty());
}

TEST_F(Lifecycle_test, the_disconnected_mark_hinders_no_operation)
{
    device().set_disconnected(true);
    running_device();
    EXPECT_TRUE(device().disconnected());
    EXPECT_EQ(device().stop_video(), 0);
    EXPECT_EQ(device().close(), 0);
    EXPECT_TRUE(device().disconnected());
    device().set_disconnected(false);
    EXPECT_FALSE(device().disconnected());
}

TEST_F(Lifecycle_test, an_open_device_that_ends_leaves_the_scanner_open)
{
    open_device();
    drop_device();
    EXPECT_THAT(take_calls(), IsEmpty());
    EXPECT_EQ(brenvozulta_sim_is_open(first_scanner), 1);
}

}  // namespace
