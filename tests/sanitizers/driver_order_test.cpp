// Calls of the driver order nothing between threads; its calls of the host do.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "brenvozulta_simulator/control.h"
#include "driver/driver.h"
#include "planted_race.h"

namespace sanitizer_tests {
namespace {

constexpr std::uint32_t patience_ms = 20'000;

class Driver_order_test : public ::testing::Test {
protected:
    void SetUp() override
    {
        brenvozulta_sim_reset();
        brenvozulta_sim_set_frame_rate(0);
        ASSERT_EQ(QXDR_Initialize(), 0U);
    }
    void TearDown() override
    {
        QXDR_Release();
        brenvozulta_sim_reset();
    }
};

TEST_F(Driver_order_test, a_call_hides_no_race)
{
    EXPECT_EQ(races_around([] {
                  std::int32_t count = 0;
                  std::vector<DriverDeviceEntry> entries(driver_list_capacity);
                  QXDR_GetDevicesList(&count, entries.data());
              }),
              1);
    EXPECT_EQ(races_around([] {
                  void* handle = nullptr;
                  QXDR_OpenDevice(BRENVOZULTA_SIM_DEFAULT_SCANNER, &handle);
              }),
              1);
}

TEST_F(Driver_order_test, a_call_that_is_held_up_hides_no_race)
{
    brenvozulta_sim_set_delay("QXDR_StopCapture", 5);
    EXPECT_EQ(races_around([] { QXDR_StopCapture(nullptr); }), 1);
}

TEST_F(Driver_order_test, a_look_at_the_record_hides_no_race)
{
    EXPECT_EQ(races_around([] { brenvozulta_sim_call_count(); }), 1);
}

struct Host {
    int set_before = 0;
    int images = 0;
};

std::int32_t count_image(const std::uint8_t*, std::uint16_t, std::uint16_t, void* context)
{
    auto& host = *static_cast<Host*>(context);
    host.images += host.set_before;
    return 0;
}

void deliver_one_image()
{
    const std::uint8_t pixels[4] = {};
    brenvozulta_sim_image image = {};
    image.pixels = pixels;
    image.length = sizeof pixels;
    image.width = 2;
    image.height = 2;
    EXPECT_EQ(brenvozulta_sim_deliver(&image, patience_ms, nullptr), 1);
}

TEST_F(Driver_order_test, the_callback_follows_its_setting_and_an_image_its_delivery)
{
    Host host;
    EXPECT_EQ(races_between(
                  [&] {
                      host.set_before = 1;
                      QXDR_SetCallbackAcquisition(count_image, &host);
                  },
                  [&] {
                      deliver_one_image();
                      EXPECT_EQ(host.images, 1);
                  }),
              0);
}

Host listening;

void count_event(std::int32_t, void*)
{
    listening.images += listening.set_before;
}

TEST_F(Driver_order_test, the_listener_follows_its_setting_and_a_wait_the_listener)
{
    EXPECT_EQ(races_between(
                  [] {
                      listening.set_before = 1;
                      QXDR_SetListenerCallbackHotPlug(count_event);
                  },
                  [] {
                      brenvozulta_sim_plug("RQ7-3050 #2");
                      EXPECT_EQ(brenvozulta_sim_wait_events_delivered(1, patience_ms), 1);
                      EXPECT_EQ(listening.images, 1);
                  }),
              0);
}

TEST_F(Driver_order_test, a_stop_follows_the_images_of_its_capture)
{
    Host host;
    host.set_before = 1;
    void* handle = nullptr;
    ASSERT_EQ(QXDR_OpenDevice(BRENVOZULTA_SIM_DEFAULT_SCANNER, &handle), 0U);
    ASSERT_EQ(QXDR_SetCallbackAcquisition(count_image, &host), 0U);
    ASSERT_EQ(QXDR_SelectCaptureConfig(handle, 1), 0U);
    EXPECT_EQ(races_between([&] { EXPECT_EQ(QXDR_StartCapture(handle), 0U); },
                            [&] {
                                brenvozulta_sim_deliver_next(nullptr);
                                while (brenvozulta_sim_callbacks_entered() == 0) {
                                    std::this_thread::yield();
                                }
                                EXPECT_EQ(QXDR_StopCapture(handle), 0U);
                                EXPECT_EQ(host.images, 1);
                            }),
              0);
}

}  // namespace
}  // namespace sanitizer_tests
