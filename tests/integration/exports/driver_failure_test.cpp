// A driver that fails at each single call of a session with each of its results.
#include <functional>
#include <string>
#include <vector>

#include "driver/driver.h"
#include "support/driver_results.h"
#include "support/scanner_test.h"

namespace {

using test_support::driver_error_line;
using test_support::error_line;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

std::string decimal(std::uint32_t result)
{
    return std::to_string(static_cast<std::int32_t>(result));  // as the log shows it
}

class Driver_failure_test : public test_support::Scanner_test {
protected:
    void SetUp() override
    {
        Scanner_test::SetUp();
        brenvozulta_sim_set_idle_stop_result(driver_scanner_gone);  // a start then makes no pause
    }

    // One whole session, to show that nothing of a failure is left.
    void expect_a_session_works()
    {
        std::uint32_t handle = VYRA_NO_HANDLE;
        unsigned char pixel = 0;
        ASSERT_EQ(VyraOpenDevice(BRENVOZULTA_SIM_DEFAULT_SCANNER, &handle), VYRA_OK);
        EXPECT_EQ(handle, 0U);
        EXPECT_EQ(VyraBrenvoStartVideo(handle, 1, 0), VYRA_OK);
        EXPECT_EQ(VyraSubmitVideoRequest(handle, &pixel, 0), VYRA_OK);
        EXPECT_EQ(VyraStopVideo(handle), VYRA_OK);
        EXPECT_EQ(VyraCloseDevice_N(handle), VYRA_OK);
        EXPECT_THAT(take_log(), IsEmpty());
    }

    static void fail_once(const std::string& function, std::uint32_t result)
    {
        ASSERT_EQ(brenvozulta_sim_fail(function.c_str(), result, 1), 1);
    }

    static void for_each_failure(const std::function<void(std::uint32_t result, std::int32_t status)>& body)
    {
        for (const auto& [result, status] : test_support::driver_failures) {
            SCOPED_TRACE("driver result " + decimal(result));
            body(result, status);
            if (HasFailure()) {
                break;
            }
        }
    }
};

TEST_F(Driver_failure_test, of_initialize_is_an_internal_error_and_leaves_nothing_initialized)
{
    for_each_failure([&](std::uint32_t result, std::int32_t /*status*/) {
        fail_once("QXDR_Initialize", result);
        EXPECT_EQ(VyraInitialize_N(nullptr, 3, 0), VYRA_INTERNAL);
        EXPECT_EQ(VyraStopVideo(0), VYRA_NOT_INITIALIZED);
        EXPECT_THAT(take_log(), ElementsAre(error_line("initialize", 9000), error_line("stop_video", 9101)));
    });
    initialize();
    expect_a_session_works();
}

TEST_F(Driver_failure_test, of_the_list_at_initialization_has_its_own_statuses)
{
    for_each_failure([&](std::uint32_t result, std::int32_t /*status*/) {
        fail_once("QXDR_GetDevicesList", result);
        const std::int32_t expected = result == driver_no_scanner     ? VYRA_OK
                                      : result == driver_scanner_busy ? VYRA_SCN_UNAVAILABLE
                                                                      : VYRA_INTERNAL;
        EXPECT_EQ(VyraInitialize_N(nullptr, 3, 0), expected);
        std::vector<std::string> lines;
        if (result != driver_no_scanner) {
            lines = {"--Error :initialize -- >  QXDR_GetDevicesList ret = " + decimal(result) + " \n"};
        }
        EXPECT_THAT(take_log(), ElementsAreArray(lines));
        EXPECT_EQ(VyraTerminate(), VYRA_OK) << "the driver is up and can be released";
    });
    initialize();
    expect_a_session_works();
}

TEST_F(Driver_failure_test, of_the_hot_plug_listener_is_a_warning)
{
    for_each_failure([&](std::uint32_t result, std::int32_t /*status*/) {
        fail_once("QXDR_SetListenerCallbackHotPlug", result);
        EXPECT_EQ(VyraInitialize_N(nullptr, 3, 0), VYRA_OK);
        EXPECT_THAT(take_log(), ElementsAre("--Warning :initialize -- >  QXDR_SetListenerCallbackHotPlug ret = " +
                                            decimal(result) + " \n"));
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
    });
}

TEST_F(Driver_failure_test, of_opening_is_translated_and_leaves_no_handle)
{
    initialize();
    for (const std::string function : {"QXDR_OpenDevice", "QXDR_SetCallbackAcquisition"}) {
        for_each_failure([&](std::uint32_t result, std::int32_t status) {
            fail_once(function, result);
            std::uint32_t handle = 77;
            EXPECT_EQ(VyraOpenDevice(BRENVOZULTA_SIM_DEFAULT_SCANNER, &handle), status);
            EXPECT_EQ(handle, VYRA_NO_HANDLE);
            EXPECT_THAT(take_log(), ElementsAre(driver_error_line(function, result),
                                                "open_device:    Error=" + std::to_string(status) + "\r\n"));
            // A refused callback leaves the scanner open in the driver: only the driver's release frees it.
            EXPECT_EQ(VyraTerminate(), VYRA_OK);
            initialize();
        });
        expect_a_session_works();
    }
}

TEST_F(Driver_failure_test, of_the_leds_at_opening_is_not_missed)
{
    initialize();
    for_each_failure([&](std::uint32_t result, std::int32_t /*status*/) {
        fail_once("QXDR_SetLeds", result);
        EXPECT_EQ(VyraCloseDevice_N(open()), VYRA_OK);
        EXPECT_THAT(take_log(), IsEmpty());
    });
}

TEST_F(Driver_failure_test, of_the_first_stop_at_a_start_is_not_missed)
{
    initialize();
    const std::uint32_t handle = open();
    for_each_failure([&](std::uint32_t result, std::int32_t /*status*/) {
        fail_once("QXDR_StopCapture", result);
        EXPECT_EQ(VyraBrenvoStartVideo(handle, 1, 0), VYRA_OK);
        EXPECT_EQ(VyraStopVideo(handle), VYRA_OK);
        EXPECT_THAT(take_log(), IsEmpty());
    });
}

TEST_F(Driver_failure_test, of_a_start_is_translated_and_leaves_video_stopped)
{
    initialize();
    for (const std::string function : {"QXDR_SelectCaptureConfig", "QXDR_StartCapture"}) {
        for (const auto start : {+[](std::uint32_t handle) { return VyraBrenvoStartVideo(handle, 1, 0); },
                                 +[](std::uint32_t handle) { return VyraBrenvoZultaStartCamera(handle); }}) {
            const std::uint32_t handle = open();
            for_each_failure([&](std::uint32_t result, std::int32_t status) {
                fail_once(function, result);
                const bool no_such_config = function == "QXDR_SelectCaptureConfig" && result == driver_config_refused;
                EXPECT_EQ(start(handle), no_such_config ? VYRA_CAPTURE_CONFIG : status);
                EXPECT_THAT(take_log(), ElementsAre(driver_error_line(function, result)));
                unsigned char pixel = 0;
                EXPECT_EQ(VyraSubmitVideoRequest(handle, &pixel, 0), VYRA_VIDEO_STOPPED);
                EXPECT_THAT(take_log(), ElementsAre(error_line("submit_video_request", 9105)));
            });
            EXPECT_EQ(VyraCloseDevice_N(handle), VYRA_OK);
            expect_a_session_works();
        }
    }
}

TEST_F(Driver_failure_test, of_a_stop_is_translated_and_the_stop_may_be_repeated)
{
    initialize();
    const std::uint32_t handle = open();
    for_each_failure([&](std::uint32_t result, std::int32_t status) {
        ASSERT_EQ(VyraBrenvoStartVideo(handle, 1, 0), VYRA_OK);
        fail_once("QXDR_StopCapture", result);
        EXPECT_EQ(VyraStopVideo(handle), status);
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_StopCapture", result)));
        EXPECT_EQ(brenvozulta_sim_is_capturing(BRENVOZULTA_SIM_DEFAULT_SCANNER), 1);
        EXPECT_EQ(VyraStopVideo(handle), VYRA_OK);
        EXPECT_EQ(brenvozulta_sim_is_capturing(BRENVOZULTA_SIM_DEFAULT_SCANNER), 0);
    });
    EXPECT_EQ(VyraCloseDevice_N(handle), VYRA_OK);
}

TEST_F(Driver_failure_test, of_a_close_is_logged_and_the_handle_is_given_up_all_the_same)
{
    initialize();
    for_each_failure([&](std::uint32_t result, std::int32_t status) {
        const std::uint32_t handle = open();
        fail_once("QXDR_CloseDevice", result);
        EXPECT_EQ(VyraCloseDevice_N(handle), VYRA_OK);
        EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_CloseDevice", result),
                                            "close_device:    Error=" + std::to_string(status) + "\r\n"));
        EXPECT_EQ(VyraStopVideo(handle), VYRA_BAD_SCANNER_IDX);
        EXPECT_THAT(take_log(), ElementsAre(error_line("stop_video", 9108)));
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
        initialize();
    });
    expect_a_session_works();
}

TEST_F(Driver_failure_test, of_the_release_leaves_the_library_initialized)
{
    for_each_failure([&](std::uint32_t result, std::int32_t /*status*/) {
        initialize();
        fail_once("QXDR_Release", result);
        EXPECT_EQ(VyraTerminate(), VYRA_INTERNAL);
        EXPECT_THAT(take_log(), ElementsAre(error_line("terminate", 9000)));
        expect_a_session_works();
        EXPECT_EQ(VyraTerminate(), VYRA_OK);
    });
}

}  // namespace
