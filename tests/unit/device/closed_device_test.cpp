// Devices that are not open: never opened, not opened for a failure, closed. And the closing itself.
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using kvs::brenvozulta::brenvozulta_device;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class Closed_device_test : public Device_test {
protected:
    template <class Operation>
    void expect_refused(const std::string& line, Operation run)
    {
        EXPECT_EQ(run(), 9110) << line;
        EXPECT_THAT(take_log(), ElementsAre(line));
    }

    void expect_lifecycle_and_video_refused()
    {
        brenvozulta_device& d = device();
        expect_refused("close:\t Error: 9110 Error 9110\r\n", [&] { return d.close(); });
        EXPECT_EQ(d.reset(0), 9110);
        EXPECT_THAT(take_log(), ElementsAre(address_line()));
        expect_refused(error_line("start_camera", 9110), [&] { return d.start_camera(); });
        expect_refused(error_line("start_video", 9110), [&] { return d.start_video(1); });
        expect_refused(error_line("stop_video", 9110), [&] { return d.stop_video(); });
        expect_refused(error_line("submit_video_request", 9110), [&] { return d.submit_video_request(&d, 1); });
        expect_refused(error_line("submit_video_request", 9110), [&] { return d.submit_video_request(nullptr, 1); });
        void* buffer = &d;
        std::uint64_t context = 77;
        expect_refused(error_line("get_video_result", 9110), [&] { return d.get_video_result(&buffer, &context); });
        EXPECT_EQ(buffer, nullptr);
        EXPECT_EQ(context, 77U);
    }

    void expect_identity_refused()
    {
        brenvozulta_device& d = device();
        std::vector<std::uint8_t> record(64, 0xA5);
        expect_refused(error_line("get_device_info", 9110),
                       [&] { return d.get_device_info(reinterpret_cast<DeviceInfo*>(record.data())); });
        for (const std::uint32_t index : {0U, 1U, 3U, 6U}) {
            expect_refused(error_line("get_device_capabilities", 9110), [&] {
                return d.get_device_capabilities(index, reinterpret_cast<VyraDeviceCapabilities*>(record.data()));
            });
        }
        expect_refused(error_line("get_port_type", 9110),
                       [&] { return d.get_port_type(reinterpret_cast<std::uint32_t*>(record.data())); });
        expect_refused(error_line("is_roll_supported", 9110), [&] { return d.is_roll_supported(record.data()); });
        EXPECT_THAT(record, Each(0xA5));
    }

    void expect_data_refused()
    {
        brenvozulta_device& d = device();
        std::vector<std::uint8_t> buffer(64, 0xA5);
        expect_refused("set_device_ui: VYRA_SCN_UNAVAILABLE   Error=9110: Error 9110\r\n", [&] {
            DevUI ui = {};
            return d.set_device_ui(&ui);
        });
        expect_refused(error_line("set_cmd_parameter", 9110), [&] { return d.set_cmd_parameter(1, 2); });
        expect_refused(error_line("get_global_param_size", 9110),
                       [&] { return d.get_global_param_size(reinterpret_cast<std::uint32_t*>(buffer.data())); });
        expect_refused(error_line("read_global_param", 9110), [&] { return d.read_global_param(buffer.data(), 64); });
        expect_refused(error_line("get_snapshot_acquisition", 9110),
                       [&] { return d.get_snapshot_acquisition(buffer.data(), 1, 2, 3); });
        expect_refused(error_line("read_filters", 9110), [&] { return d.read_filters(nullptr, nullptr, nullptr); });
        expect_refused(error_line("read_uniformity_buffers", 9110),
                       [&] { return d.read_uniformity_buffers(buffer.data(), VYRA_CALIBRATION_SIZE); });
        expect_refused(error_line("read_uniformity_buffers", 9110),
                       [&] { return d.read_uniformity_buffers(nullptr, 0); });
        expect_refused(error_line("update_firmware", 9110), [&] { return d.update_firmware(buffer.data(), 64); });
        EXPECT_THAT(buffer, Each(0xA5));
    }

    void expect_all_refused()
    {
        take_calls();
        expect_lifecycle_and_video_refused();
        expect_identity_refused();
        expect_data_refused();
        EXPECT_THAT(take_calls(), IsEmpty());
    }
};

TEST_F(Closed_device_test, a_device_never_opened_refuses_all_and_takes_an_open)
{
    expect_all_refused();
    EXPECT_EQ(device().set_buzzer(4), 9109);
    EXPECT_THAT(take_log(), ElementsAre(error_line("set_buzzer", 9109)));
    EXPECT_EQ(device().open(first_scanner, 0), 0);
}

TEST_F(Closed_device_test, a_device_whose_open_was_refused_refuses_all)
{
    brenvozulta_sim_fail("QXDR_OpenDevice", driver_scanner_gone, 1);
    ASSERT_EQ(device().open(first_scanner, 0), 9005);
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_OpenDevice", 4)));
    expect_all_refused();
}

TEST_F(Closed_device_test, a_device_whose_callback_was_refused_refuses_all)
{
    brenvozulta_sim_fail("QXDR_SetCallbackAcquisition", driver_scanner_gone, 1);
    ASSERT_EQ(device().open(first_scanner, 0), 9005);
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_SetCallbackAcquisition", 4)));
    expect_all_refused();
}

TEST_F(Closed_device_test, a_closed_device_refuses_all_and_keeps_what_the_operator_saw)
{
    open_device();
    DevUI ui = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10}, 0, 1, 0};
    ASSERT_EQ(device().set_device_ui(&ui), 0);
    ASSERT_EQ(device().close(), 0);

    expect_all_refused();

    DevUI shown = {};
    EXPECT_EQ(device().get_device_ui(&shown), 0);
    EXPECT_EQ(std::memcmp(&shown, &ui, sizeof ui), 0);
    EXPECT_EQ(device().set_ui_cb(nullptr, nullptr), 0);
    EXPECT_EQ(device().set_buzzer(2), 0);
}

TEST_F(Closed_device_test, close_gives_the_driver_the_place_of_the_handle_that_open_filled)
{
    const void* const handle = brenvozulta_sim_handle(first_scanner);
    ASSERT_EQ(device().open(first_scanner, 0), 0);
    brenvozulta_sim_call opened = {};
    ASSERT_EQ(brenvozulta_sim_get_call(0, &opened), 1);
    take_calls();

    EXPECT_EQ(device().close(), 0);

    const std::string place =
        address_text(reinterpret_cast<const void*>(static_cast<std::uintptr_t>(opened.arguments[1])));
    EXPECT_THAT(take_calls(), ElementsAre("QXDR_CloseDevice(driver_handle=" + place +
                                          ", *driver_handle=" + address_text(handle) + ") = 0"));
    EXPECT_EQ(brenvozulta_sim_is_open(first_scanner), 0);
}

TEST_F(Closed_device_test, a_second_close_does_not_reach_the_driver)
{
    open_device();
    ASSERT_EQ(device().close(), 0);
    take_calls();
    EXPECT_EQ(device().close(), 9110);
    EXPECT_THAT(take_log(), ElementsAre("close:\t Error: 9110 Error 9110\r\n"));
    EXPECT_THAT(take_calls(), IsEmpty());
}

TEST_F(Closed_device_test, a_refused_close_leaves_the_device_usable)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    for (const auto& [result, status] : driver_failures) {
        brenvozulta_sim_fail("QXDR_CloseDevice", result, 1);
        EXPECT_EQ(device().close(), status) << result;
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_CloseDevice", result)));
    }
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(9)) << "the request was dropped";
    EXPECT_EQ(device().stop_video(), 0);
    take_calls();
    EXPECT_EQ(device().close(), 0);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_CloseDevice"));
}

TEST_F(Closed_device_test, close_leaves_a_running_video_to_itself_and_drops_its_requests)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);

    EXPECT_EQ(device().close(), 0);

    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_CloseDevice"));
    EXPECT_EQ(device().video_state(), video_running);
    // The signal of the request that was dropped lets this one image pass.
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(0));
    EXPECT_EQ(device().stop_video(), 9110);
    EXPECT_THAT(take_log(), ElementsAre(error_line("stop_video", 9110)));
}

}  // namespace
