// The acquisition callback: what becomes of an image in each state of the video and of the queue.
#include "device/acquisition.h"

#include <boost/thread/thread.hpp>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;
using testing::Each;
using testing::ElementsAre;

class Acquisition : public Device_test {
protected:
    // An image without pixels: whoever looks at it crashes.
    static std::int32_t deliver_nothing()
    {
        brenvozulta_sim_image image = {nullptr, 0, 1608, 1000, nullptr, 0, nullptr};
        std::int32_t result = -1;
        EXPECT_EQ(brenvozulta_sim_deliver(&image, patience_ms, &result), 1) << "the callback did not return";
        return result;
    }

    // What the host gets now; null when nothing is ready.
    const std::uint8_t* fetch()
    {
        void* buffer = nullptr;
        if (device().get_video_result(&buffer, nullptr) == 9106) {
            EXPECT_THAT(take_log(), ElementsAre(error_line("get_video_result", 9106, "Video Timeout  ")));
        }
        return static_cast<std::uint8_t*>(buffer);
    }
};

TEST_F(Acquisition, In_Idle_The_Image_Is_Answered_With_0_And_Not_Looked_At)
{
    open_device();
    EXPECT_EQ(deliver_nothing(), 0);
    EXPECT_EQ(device().video_state(), video_idle);
}

TEST_F(Acquisition, While_A_Stop_Is_Requested_The_Image_Is_Answered_With_2_And_Not_Looked_At)
{
    open_device();
    device().request_stop();
    EXPECT_EQ(deliver_nothing(), 2);
    EXPECT_EQ(device().video_state(), video_stop_requested);
}

TEST_F(Acquisition, When_Stopped_The_Image_Is_Answered_With_3_And_Not_Looked_At)
{
    running_device();
    ASSERT_EQ(device().stop_video(), 0);
    EXPECT_EQ(deliver_nothing(), 3);
}

TEST_F(Acquisition, Width_Times_Height_Bytes_Go_Into_The_Request_And_Not_One_More)
{
    running_device();
    std::vector<std::uint8_t> pixels(321 * 123);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    }
    std::vector<std::uint8_t> buffer(pixels.size() + 16, 0xA5);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);

    EXPECT_EQ(deliver(pixels, 321, 123), 0);

    EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), buffer.begin()));
    EXPECT_THAT(std::vector<std::uint8_t>(buffer.end() - 16, buffer.end()), Each(0xA5));
    EXPECT_EQ(fetch(), buffer.data());
}

TEST_F(Acquisition, Without_A_Request_The_Callback_Waits_For_One_And_Fills_It)
{
    running_device();
    const std::uint64_t delivery = deliver_waiting(image_of(9));
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    EXPECT_EQ(result_of(delivery), 0);
    EXPECT_EQ(buffer, image_of(9));
    EXPECT_EQ(fetch(), buffer.data());
}

TEST_F(Acquisition, With_Requests_But_None_Pending_The_Image_Is_Dropped_Without_Waiting)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);

    EXPECT_EQ(deliver(image_of(2), image_width, image_height), 0);

    EXPECT_EQ(buffer, image_of(1));
    EXPECT_EQ(fetch(), buffer.data());
    EXPECT_EQ(fetch(), nullptr);
}

TEST_F(Acquisition, The_Signal_Of_A_Request_That_Was_Filled_At_Once_Lets_One_Later_Image_Pass)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    ASSERT_EQ(deliver(image_of(1), image_width, image_height), 0);
    ASSERT_EQ(fetch(), buffer.data());

    EXPECT_EQ(deliver(image_of(2), image_width, image_height), 0);
    EXPECT_EQ(buffer, image_of(1));
    const std::uint64_t delivery = deliver_waiting(image_of(3));
    ASSERT_EQ(device().stop_video(), 0);
    EXPECT_EQ(result_of(delivery), 0);
}

TEST_F(Acquisition, A_Size_Beyond_A_Signed_Number_Or_Of_No_Pixels_Is_No_Image)
{
    running_device();
    auto buffer = image_of(0);
    ASSERT_EQ(device().submit_video_request(buffer.data(), 7), 0);
    const std::pair<std::uint16_t, std::uint16_t> sizes[] = {{65535, 65535}, {46341, 46341}, {32769, 65535},
                                                             {0, 65535},     {65535, 0},     {0, 0}};
    for (const auto& [width, height] : sizes) {
        EXPECT_EQ(deliver(image_of(9), width, height), 0) << width << " x " << height;
        ASSERT_EQ(fetch(), nullptr) << width << " x " << height;
    }
    EXPECT_EQ(buffer, image_of(0));
    EXPECT_EQ(deliver(image_of(1), image_width, image_height), 0);
    EXPECT_EQ(fetch(), buffer.data()) << "the request is no longer pending";
}

TEST_F(Acquisition, An_Image_During_Open_Finds_An_Idle_Video_And_Nothing_Happens)
{
    ASSERT_EQ(brenvozulta_sim_block("QXDR_SetLeds"), 1);
    boost::thread opening([this] { EXPECT_EQ(device().open(first_scanner, 0), 0); });
    EXPECT_EQ(brenvozulta_sim_wait_blocked("QXDR_SetLeds", 1, patience_ms), 1);

    EXPECT_EQ(deliver_nothing(), 0);

    brenvozulta_sim_unblock("QXDR_SetLeds");
    opening.join();
    EXPECT_EQ(device().video_state(), video_idle);
    EXPECT_EQ(device().start_camera(), 0);
}

TEST_F(Acquisition, Images_Of_Two_Scanners_Go_To_The_Device_That_The_Context_Names)
{
    brenvozulta_sim_attach(second_scanner);
    running_device();
    brenvozulta_device other;
    ASSERT_EQ(other.open(second_scanner, 0), 0);
    ASSERT_EQ(other.start_camera(), 0);
    auto of_first = image_of(0);
    auto of_second = image_of(0);
    ASSERT_EQ(device().submit_video_request(of_first.data(), 1), 0);
    ASSERT_EQ(other.submit_video_request(of_second.data(), 2), 0);

    EXPECT_EQ(deliver(image_of(2), image_width, image_height), 0);
    EXPECT_EQ(of_second, image_of(2));
    EXPECT_EQ(of_first, image_of(0));
    EXPECT_EQ(deliver_to(&device(), image_of(1)), 0);
    EXPECT_EQ(of_first, image_of(1));
    EXPECT_EQ(other.stop_video(), 0);
}

TEST_F(Acquisition, An_Image_For_A_Device_That_Is_Gone_Is_Refused_With_3)
{
    running_device();
    void* const context = brenvozulta_sim_callback_context();
    drop_device();
    EXPECT_EQ(deliver_to(context, image_of(1)), 3);
    EXPECT_EQ(deliver_nothing(), 3);
}

TEST_F(Acquisition, An_Image_With_A_Context_That_Never_Was_A_Device_Is_Refused_With_3)
{
    open_device();
    EXPECT_EQ(deliver_to(nullptr, image_of(1)), 3);
    EXPECT_EQ(deliver_to(this, image_of(1)), 3);
}

TEST_F(Acquisition, After_A_Close_The_Old_Context_Answers_With_The_State_Of_Its_Video)
{
    open_device();
    ASSERT_EQ(device().close(), 0);
    EXPECT_EQ(deliver_nothing(), 0);

    drop_device();
    EXPECT_EQ(deliver_nothing(), 3);
}

TEST_F(Acquisition, After_A_Refused_Registration_The_Device_Is_Not_Held_To_Be_Video)
{
    const brenvozulta_sim_fault registered_but_refused = {9, 0, 1, 1};
    brenvozulta_sim_set_fault("QXDR_SetCallbackAcquisition", &registered_but_refused);
    ASSERT_EQ(device().open(first_scanner, 0), 9016);
    take_log();
    EXPECT_EQ(deliver_nothing(), 0);
    drop_device();
    EXPECT_EQ(deliver_nothing(), 3);
}

}  // namespace
