// Generated fingerprints: whether they are what they claim to be, measured.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "driver_stage.h"

namespace simulator_test {
namespace {

class Synthetic_images_test : public Driver_test {
protected:
    static std::vector<Received_image> images(std::uint64_t seed, std::uint8_t config, int count)
    {
        brenvozulta_sim_use_synthetic_images(seed);
        Host::reset();
        void* handle = start_capture(scanner, config);
        for (int i = 0; i < count; ++i) {
            const std::uint64_t ticket = brenvozulta_sim_deliver_next(nullptr);
            EXPECT_TRUE(brenvozulta_sim_wait_delivery_done(ticket, patience_ms, nullptr));
        }
        EXPECT_EQ(QXDR_StopCapture(handle), 0U);
        return Host::images();
    }

    // Middle greys that a column crosses on its way from dark to bright or back, in a window.
    static int crossings(const Received_image& image, int x, int top, int bottom)
    {
        int count = 0;
        bool dark = false;
        for (int y = top; y < bottom; ++y) {
            const std::uint8_t grey =
                image.pixels[static_cast<std::size_t>(y) * image.width + static_cast<std::size_t>(x)];
            if (grey < 100 && !dark) {
                dark = true;
                ++count;
            } else if (grey > 180) {
                dark = false;
            }
        }
        return count;
    }
};

TEST_F(Synthetic_images_test, they_have_the_size_of_the_configuration)
{
    initialize();
    const auto flat = images(1, 1, 1);
    EXPECT_EQ(flat.at(0).width, 1600);
    EXPECT_EQ(flat.at(0).height, 1500);
    const auto roll = images(1, 13, 1);
    EXPECT_EQ(roll.at(0).width, 1608);
    EXPECT_EQ(roll.at(0).height, 1000);
}

TEST_F(Synthetic_images_test, ridges_on_a_bright_ground_and_a_ridge_every_nine_or_ten_pixels)
{
    initialize();
    const Received_image image = images(1, 13, 1).at(0);
    const auto sum = std::accumulate(image.pixels.begin(), image.pixels.begin() + image.width * 8, 0.0);
    EXPECT_GT(sum / (image.width * 8), 220) << "the ground above the finger";
    // Straight above the core the ridges lie across: a column meets one in each period.
    const int met = crossings(image, 804, 180, 420);
    EXPECT_GT(240.0 / met, 7.0);
    EXPECT_LT(240.0 / met, 14.0);
}

TEST_F(Synthetic_images_test, neighbours_are_alike_as_they_are_not_in_noise)
{
    initialize();
    const Received_image image = images(1, 1, 1).at(0);
    double difference = 0;
    double spread = 0;
    const double mean =
        std::accumulate(image.pixels.begin(), image.pixels.end(), 0.0) / static_cast<double>(image.pixels.size());
    for (std::size_t i = 1; i < image.pixels.size(); ++i) {
        difference += std::pow(image.pixels[i] - image.pixels[i - 1], 2);
        spread += std::pow(image.pixels[i] - mean, 2);
    }
    EXPECT_LT(difference, 0.5 * spread) << "in white noise it is twice the spread";
}

TEST_F(Synthetic_images_test, a_seed_gives_the_same_images_again_and_another_seed_others)
{
    initialize();
    const auto first = images(1, 1, 1);
    const auto again = images(1, 1, 1);
    const auto other = images(2, 1, 1);
    EXPECT_TRUE(first.at(0).pixels == again.at(0).pixels);
    EXPECT_FALSE(first.at(0).pixels == other.at(0).pixels);
}

TEST_F(Synthetic_images_test, frames_of_one_capture_differ)
{
    initialize();
    const auto frames = images(1, 1, 3);
    EXPECT_FALSE(frames.at(0).pixels == frames.at(1).pixels);
    EXPECT_FALSE(frames.at(1).pixels == frames.at(2).pixels);
}

TEST_F(Synthetic_images_test, the_smallest_image_can_be_drawn)
{
    initialize();
    ASSERT_TRUE(brenvozulta_sim_set_capture_config(5, "tiny", 1, 1));
    EXPECT_EQ(images(1, 5, 2).at(1).pixels.size(), 1U);
    EXPECT_FALSE(brenvozulta_sim_set_capture_config(5, "none", 0, 1));
    EXPECT_FALSE(brenvozulta_sim_set_capture_config(5, "huge", 65535, 65535));
}

}  // namespace
}  // namespace simulator_test
