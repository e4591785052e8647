// Opening and resetting a scanner, and the end of a device.
#include "device/acquisition.h"
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class Lifecycle : public Device_test {
protected:
    std::string registration() const
    {
        return "QXDR_SetCallbackAcquisition(callback=" +
               address_text(reinterpret_cast<const void*>(kvs::brenvozulta::on_acquisition)) +
               ", context=" + address_text(const_cast<Lifecycle*>(this)->deviceAddress()) + ")";
    }
    const void* deviceAddress() { return &device(); }
};

std::string all_leds_off(std::uint32_t result = 0)
{
    return scanner_call("QXDR_SetLeds", "area=0, pattern=0, on=0, fifth=0", result);
}

TEST_F(Lifecycle, Construction_And_Destruction_Touch_Neither_Driver_Nor_Log)
{
    EXPECT_FALSE(device().disconnected());
    drop_device();
    EXPECT_THAT(take_calls(), IsEmpty());
}

TEST_F(Lifecycle, Open_Opens_Registers_And_Switches_The_Leds_Off)
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

TEST_F(Lifecycle, The_Open_Option_Is_Not_Used)
{
    EXPECT_EQ(device().open(first_scanner, 0xFF), 0);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_OpenDevice", "QXDR_SetCallbackAcquisition", "QXDR_SetLeds"));
}

TEST_F(Lifecycle, The_Name_Reaches_The_Driver_Up_To_Its_Terminator)
{
    const std::string name = std::string(first_scanner) + '\0' + "more";
    EXPECT_EQ(device().open(name, 0), 0);
    EXPECT_EQ(device().name(), name);
}

TEST_F(Lifecycle, A_Refused_Open_Ends_There_With_The_Translated_Result)
{
    for (const auto& [result, status] : translations()) {
        brenvozulta_sim_fail("QXDR_OpenDevice", result, 1);
        EXPECT_EQ(device().open(first_scanner, 0), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_OpenDevice", result)));
        EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_OpenDevice"));
        EXPECT_EQ(device().start_camera(), 9110);
        EXPECT_THAT(take_log(), ElementsAre(not_open_line("start_camera")));
    }
}

TEST_F(Lifecycle, A_Refused_Callback_Leaves_The_Scanner_Open_In_The_Driver)
{
    for (const auto& [result, status] : translations()) {
        brenvozulta_sim_fail("QXDR_SetCallbackAcquisition", result, 1);
        EXPECT_EQ(device().open(first_scanner, 0), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_SetCallbackAcquisition", result)));
        EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_OpenDevice", "QXDR_SetCallbackAcquisition"));
        EXPECT_EQ(brenvozulta_sim_is_open(first_scanner), 1);
        EXPECT_EQ(device().close(), 9110);
        EXPECT_THAT(take_log(), ElementsAre("close:\t Error: 9110 Error 9110\r\n"));
    }
}

TEST_F(Lifecycle, Leds_That_Cannot_Be_Switched_Off_Are_Ignored)
{
    for (const auto& translation : translations()) {
        brenvozulta_sim_fail("QXDR_SetLeds", translation.result, 1);
        EXPECT_EQ(device().open(first_scanner, 0), 0);
        EXPECT_THAT(take_log(), IsEmpty());
    }
    EXPECT_EQ(device().start_camera(), 0);
}

TEST_F(Lifecycle, A_Device_Whose_Open_Failed_Can_Be_Opened)
{
    brenvozulta_sim_fail("QXDR_OpenDevice", 4, 1);
    EXPECT_EQ(device().open("elsewhere", 0), 9005);
    take_log();
    EXPECT_EQ(device().open(first_scanner, 0), 0);
    EXPECT_EQ(device().name(), first_scanner);
}

TEST_F(Lifecycle, A_Later_Open_Starts_With_Fresh_Records)
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
    EXPECT_EQ(std::memcmp(&shown, &(const DevUI&)DevUI{}, sizeof(shown)), 0);
    EXPECT_EQ(device().set_device_ui(&ui), 0);
}

TEST_F(Lifecycle, A_Later_Open_Has_A_Queue_Without_The_Signal_Of_The_Earlier_One)
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

TEST_F(Lifecycle, Opening_A_Second_Scanner_Moves_The_Callback_To_It)
{
    brenvozulta_sim_attach(second_scanner);
    open_device();
    brenvozulta_device other;
    EXPECT_EQ(other.open(second_scanner, 0), 0);
    EXPECT_EQ(brenvozulta_sim_callback_context(), &other);
    EXPECT_EQ(other.driver_handle(), brenvozulta_sim_handle(second_scanner));
    EXPECT_EQ(device().driver_handle(), brenvozulta_sim_handle(first_scanner));
}

TEST_F(Lifecycle, Reset_Resets_The_Scanner_Whatever_The_Handle)
{
    open_device();
    brenvozulta_sim_fail("QXDR_ResetDevice", 0, 2);  // accepted, without the restart
    EXPECT_EQ(device().reset(0), 0);
    EXPECT_EQ(device().reset(0xFFFFFFFF), 0);
    EXPECT_THAT(take_calls(), ElementsAre(scanner_call("QXDR_ResetDevice"), scanner_call("QXDR_ResetDevice")));
}

TEST_F(Lifecycle, A_Refused_Reset_Returns_The_Translated_Result)
{
    open_device();
    for (const auto& [result, status] : translations()) {
        brenvozulta_sim_fail("QXDR_ResetDevice", result, 1);
        EXPECT_EQ(device().reset(0), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_ResetDevice", result)));
    }
    EXPECT_EQ(device().close(), 0);
}

TEST_F(Lifecycle, Reset_Leaves_A_Running_Video_Untouched)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    brenvozulta_sim_fail("QXDR_ResetDevice", 0, 1);

    EXPECT_EQ(device().reset(0), 0);

    EXPECT_EQ(device().video_state(), video_running);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_ResetDevice"));
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(9));
}

TEST_F(Lifecycle, A_Refused_Reset_Shows_The_Address_Of_The_Text_As_Its_Number)
{
    EXPECT_EQ(device().reset(0), 9110);
    EXPECT_THAT(take_log(), ElementsAre(address_line()));
    EXPECT_THAT(take_calls(), IsEmpty());
}

TEST_F(Lifecycle, The_Disconnected_Mark_Hinders_No_Operation)
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

TEST_F(Lifecycle, An_Open_Device_That_Ends_Leaves_The_Scanner_Open)
{
    open_device();
    drop_device();
    EXPECT_THAT(take_calls(), IsEmpty());
    EXPECT_EQ(brenvozulta_sim_is_open(first_scanner), 1);
}

}  // namespace
