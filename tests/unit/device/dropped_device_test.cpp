// Devices that are dropped while video runs: nothing is stopped, closed or waited for, and memory stays safe.
#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class Dropped_device_test : public Device_test {
protected:
    // Opens a scanner through the exports and starts its video; the calls of that are forgotten.
    std::uint32_t running(const char* scanner = first_scanner)
    {
        const std::uint32_t handle = open(scanner);
        EXPECT_EQ(VyraBrenvoZultaStartCamera(handle), 0);
        brenvozulta_sim_clear_calls();
        return handle;
    }
};

TEST_F(Dropped_device_test, nothing_is_stopped_or_closed)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    drop_device();
    EXPECT_THAT(take_calls(), IsEmpty());
    EXPECT_EQ(brenvozulta_sim_is_open(first_scanner), 1);
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 1);
    EXPECT_EQ(deliver(image_of(9), image_width, image_height), 3);
    EXPECT_EQ(buffer, image_of(0));
}

TEST_F(Dropped_device_test, a_callback_that_waits_returns)
{
    running_device();
    void* const context = brenvozulta_sim_callback_context();
    const std::uint64_t delivery = deliver_waiting(image_of(9));
    drop_device();
    EXPECT_THAT(take_calls(), IsEmpty());
    EXPECT_EQ(result_of(delivery), 0);
    EXPECT_EQ(deliver_to(context, image_of(9)), 3);
}

TEST_F(Dropped_device_test, a_new_device_at_the_same_scanner_works_beside_a_callback_that_waits)
{
    running_device();
    deliver_waiting(image_of(9));
    drop_device();

    brenvozulta_device next;
    ASSERT_EQ(next.open(first_scanner, 0), 0);
    ASSERT_EQ(next.start_camera(), 0);  // stops what still captures
    auto buffer = image_of(0);
    ASSERT_EQ(next.submit_video_request(buffer.data(), 7), 0);
    EXPECT_EQ(deliver(image_of(5), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(5));
    EXPECT_EQ(next.stop_video(), 0);
    EXPECT_EQ(next.close(), 0);
}

TEST_F(Dropped_device_test, closed_by_its_handle_while_video_runs)
{
    const std::uint32_t handle = running();
    void* const context = brenvozulta_sim_callback_context();
    EXPECT_EQ(VyraCloseDevice_N(handle), 0);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_CloseDevice"));
    EXPECT_EQ(deliver_to(context, image_of(1)), 3);
}

TEST_F(Dropped_device_test, closed_by_its_handle_while_the_callback_waits)
{
    const std::uint32_t handle = running();
    deliver_waiting(image_of(9));
    EXPECT_EQ(VyraCloseDevice_N(handle), 0);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_CloseDevice"));
}

TEST_F(Dropped_device_test, a_refused_close_by_handle_drops_the_device_all_the_same)
{
    const std::uint32_t handle = running();
    brenvozulta_sim_fail("QXDR_CloseDevice", driver_timeout, 1);
    EXPECT_EQ(VyraCloseDevice_N(handle), 0);
    EXPECT_THAT(take_log(), ElementsAre(driver_error_line("QXDR_CloseDevice", 9), "close_device:    Error=9016\r\n"));
    EXPECT_EQ(brenvozulta_sim_is_capturing(first_scanner), 1);
    EXPECT_EQ(deliver(image_of(1), image_width, image_height), 3);
}

TEST_F(Dropped_device_test, terminated_while_video_runs)
{
    running();
    void* const context = brenvozulta_sim_callback_context();
    deliver_waiting(image_of(9));
    EXPECT_EQ(VyraTerminate(), 0);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_CloseDevice", "QXDR_Release"));
    EXPECT_EQ(deliver_to(context, image_of(1)), 3);
}

TEST_F(Dropped_device_test, terminated_with_a_device_that_terminate_does_not_close)
{
    brenvozulta_sim_attach(second_scanner);
    const std::uint32_t lower = open(first_scanner);
    running(second_scanner);
    void* const context = brenvozulta_sim_callback_context();
    ASSERT_EQ(VyraCloseDevice_N(lower), 0);
    brenvozulta_sim_clear_calls();
    EXPECT_EQ(VyraTerminate(), 0);
    EXPECT_THAT(take_log(), ElementsAre(error_line("close_device", 9108)));
    EXPECT_THAT(take_driver_calls(), Not(Contains(HasSubstr("StopCapture"))));
    EXPECT_EQ(deliver_to(context, image_of(1)), 3);
}

TEST_F(Dropped_device_test, displaced_by_a_later_open_while_video_runs)
{
    brenvozulta_sim_attach(second_scanner);
    brenvozulta_sim_attach("RQ7-3050 #3");
    const std::uint32_t lower = open(first_scanner);
    const std::uint32_t displaced = running(second_scanner);
    void* const context = brenvozulta_sim_callback_context();
    ASSERT_EQ(VyraCloseDevice_N(lower), 0);
    brenvozulta_sim_clear_calls();

    EXPECT_EQ(open("RQ7-3050 #3"), displaced);

    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_OpenDevice", "QXDR_SetCallbackAcquisition", "QXDR_SetLeds"));
    EXPECT_EQ(brenvozulta_sim_is_capturing(second_scanner), 1);
    EXPECT_EQ(deliver_to(context, image_of(1)), 3);
}

}  // namespace
