// What the headers and the guide warn hosts of.
#include <array>
#include <vector>

#include "support/scanner_test.h"

namespace {

using test_support::patience_ms;

constexpr const char* left = BRENVOZULTA_SIM_DEFAULT_SCANNER;
constexpr const char* right = "RQ7-3050 #2";

using Buffer = std::vector<std::uint8_t>;

class Surprises_test : public test_support::Scanner_test {
protected:
    void SetUp() override
    {
        Scanner_test::SetUp();
        brenvozulta_sim_set_idle_stop_result(4);  // a start then makes no pause
        ASSERT_EQ(VyraInitialize_N(nullptr, VYRA_LOG_OFF, 0), VYRA_OK);
    }

    // One image of this grey from a scanner; true when the library's callback took it.
    static bool deliver(const char* scanner, std::uint8_t grey)
    {
        const std::array<std::uint8_t, 4> pixels = {grey, grey, grey, grey};
        brenvozulta_sim_image image = {};
        image.pixels = pixels.data();
        image.length = pixels.size();
        image.width = 2;
        image.height = 2;
        image.scanner = scanner;
        std::int32_t result = -1;
        return brenvozulta_sim_deliver(&image, patience_ms, &result) == 1 && result == 0;
    }

    static std::int32_t fetch(std::uint32_t handle)
    {
        void* filled = nullptr;
        return VyraGetVideoResult(handle, &filled, nullptr);
    }
};

TEST_F(Surprises_test, scanner_opened_last_gets_the_images_of_all)
{
    ASSERT_EQ(brenvozulta_sim_attach(right), 1);
    Buffer first(4);
    Buffer second(4);
    const std::uint32_t silenced = open(left);
    ASSERT_EQ(VyraBrenvoStartVideo(silenced, VYRA_MODE_FLAT, 0), VYRA_OK);
    ASSERT_EQ(VyraSubmitVideoRequest(silenced, first.data(), 0), VYRA_OK);
    const std::uint32_t last = open(right);
    ASSERT_EQ(VyraBrenvoStartVideo(last, VYRA_MODE_FLAT, 0), VYRA_OK);
    ASSERT_EQ(VyraSubmitVideoRequest(last, second.data(), 0), VYRA_OK);

    EXPECT_TRUE(deliver(left, 7));
    EXPECT_EQ(fetch(silenced), VYRA_VIDEO_TIMEOUT);
    EXPECT_EQ(fetch(last), VYRA_OK);
    EXPECT_EQ(second, Buffer(4, 7)) << "an image of the other scanner, in this one's buffer";
    EXPECT_EQ(first, Buffer(4));
}

TEST_F(Surprises_test, silenced_scanner_delivers_again_once_it_is_opened_anew)
{
    ASSERT_EQ(brenvozulta_sim_attach(right), 1);
    Buffer buffer(4);
    std::uint32_t silenced = open(left);
    ASSERT_EQ(VyraCloseDevice_N(open(right)), VYRA_OK);
    ASSERT_EQ(VyraBrenvoStartVideo(silenced, VYRA_MODE_FLAT, 0), VYRA_OK);
    ASSERT_EQ(VyraSubmitVideoRequest(silenced, buffer.data(), 0), VYRA_OK);
    EXPECT_FALSE(deliver(left, 7)) << "the close of the other does not bring it back";
    EXPECT_EQ(fetch(silenced), VYRA_VIDEO_TIMEOUT);

    ASSERT_EQ(VyraStopVideo(silenced), VYRA_OK);
    ASSERT_EQ(VyraCloseDevice_N(silenced), VYRA_OK);
    silenced = open(left);
    ASSERT_EQ(VyraBrenvoStartVideo(silenced, VYRA_MODE_FLAT, 0), VYRA_OK);
    ASSERT_EQ(VyraSubmitVideoRequest(silenced, buffer.data(), 0), VYRA_OK);
    EXPECT_TRUE(deliver(left, 7));
    EXPECT_EQ(fetch(silenced), VYRA_OK);
}

TEST_F(Surprises_test, pulled_cable_looks_like_no_image_yet)
{
    Buffer buffer(4);
    const std::uint32_t handle = open();
    ASSERT_EQ(VyraBrenvoStartVideo(handle, VYRA_MODE_FLAT, 0), VYRA_OK);
    ASSERT_EQ(VyraSubmitVideoRequest(handle, buffer.data(), 0), VYRA_OK);
    ASSERT_EQ(brenvozulta_sim_unplug(BRENVOZULTA_SIM_DEFAULT_SCANNER), 1);
    ASSERT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    EXPECT_EQ(VyraGetStatus(handle), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(fetch(handle), VYRA_VIDEO_TIMEOUT);
    VyraStopVideo(handle);
    EXPECT_EQ(VyraCloseDevice_N(handle), VYRA_OK);
}

TEST_F(Surprises_test, capability_record_of_index_0_has_other_sizes_than_a_rolled_image)
{
    VyraDeviceCapabilities record = {};
    ASSERT_EQ(VyraBrenvoGetCapabilities(open(), VYRA_CAPABILITIES_ROLL, &record), VYRA_OK);
    EXPECT_EQ(record.image_width, 800U);
    EXPECT_EQ(record.image_height, 750U);
    EXPECT_NE(record.image_width * record.image_height, VYRA_ROLL_SIZE);
}

TEST_F(Surprises_test, short_list_is_cut_without_a_word)
{
    ASSERT_EQ(brenvozulta_sim_attach(right), 1);
    DeviceListRecord record = {};
    std::uint32_t count = 1;
    EXPECT_EQ(VyraGetDeviceList_N(&count, &record), VYRA_OK);
    EXPECT_EQ(count, 1U);
}

}  // namespace
