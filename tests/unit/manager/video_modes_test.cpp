// The host's video modes and the capture configurations that the driver gets for them.
#include "manager_test.h"

using namespace manager_tests;
using ::testing::IsEmpty;

namespace {

class Video_modes_test : public Manager_test {
protected:
    void SetUp() override
    {
        Manager_test::SetUp();
        open_scanners(1);
        brenvozulta_sim_set_idle_stop_result(driver_wrong_state);
    }

    // The configuration that a mode selects in the driver, 0 for a mode that is refused.
    int config_of(std::uint32_t mode, std::uint32_t unused = 0)
    {
        brenvozulta_sim_clear_calls();
        const std::int32_t status = VyraBrenvoStartVideo(0, mode, unused);
        if (status == VYRA_BAD_PARAMETER) {
            EXPECT_THAT(take_driver_calls(), IsEmpty()) << mode;
            EXPECT_EQ(access::device(0).video_state(), 0U) << mode;
            return 0;
        }
        EXPECT_EQ(status, VYRA_OK) << mode;
        const int config = brenvozulta_sim_selected_config(scanner_1);
        EXPECT_EQ(VyraStopVideo(0), VYRA_OK);
        return config;
    }
};

}  // namespace

TEST_F(Video_modes_test, modes_3_and_above_18_are_9109_without_a_line)
{
    for (const std::uint32_t mode : {3U, 19U, 20U, 256U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(config_of(mode), 0);
    }
}

TEST_F(Video_modes_test, modes_1_2_and_4_to_8_capture_flat_fingers)
{
    for (const std::uint32_t mode : {1U, 2U, 4U, 5U, 6U, 7U, 8U}) {
        EXPECT_EQ(config_of(mode), 1) << mode;
    }
}

TEST_F(Video_modes_test, modes_0_and_9_to_18_capture_rolled_fingers)
{
    for (const std::uint32_t mode : {0U, 9U, 10U, 11U, 12U, 13U, 14U, 15U, 16U, 17U, 18U}) {
        EXPECT_EQ(config_of(mode), 13) << mode;
    }
}

TEST_F(Video_modes_test, the_third_argument_is_not_used)
{
    EXPECT_EQ(config_of(1, 0xFFFFFFFF), 1);
    EXPECT_EQ(config_of(0, 3), 13);
}

TEST_F(Video_modes_test, the_camera_captures_flat_fingers)
{
    ASSERT_EQ(VyraBrenvoStartVideo(0, 0, 0), VYRA_OK);
    ASSERT_EQ(VyraStopVideo(0), VYRA_OK);
    ASSERT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
    EXPECT_EQ(brenvozulta_sim_selected_config(scanner_1), 1);
}

TEST_F(Video_modes_test, a_refused_mode_comes_after_the_handle)
{
    EXPECT_EQ(VyraBrenvoStartVideo(1, 3, 0), VYRA_BAD_SCANNER_IDX);
    EXPECT_EQ(take_log(), Lines{error_line("start_video", VYRA_BAD_SCANNER_IDX)});
}
