// The generated calibration image, as it is embedded: what a host that corrects images with it relies on.
#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numeric>
#include <vector>

#include <gmock/gmock.h>

namespace {

using testing::AllOf;
using testing::Each;
using testing::Ge;
using testing::Gt;
using testing::Le;
using testing::Lt;

constexpr int width = 3216;
constexpr int height = 2004;
constexpr std::size_t size = 6444864;
constexpr int margin = 240;  // around the scanning area

std::vector<std::uint8_t> embedded_image()
{
    const HMODULE module = GetModuleHandleA(RESOURCE_MODULE);
    const HRSRC resource = FindResourceA(module, MAKEINTRESOURCEA(101), "image_raw");
    if (resource == nullptr) {
        return {};
    }
    const auto* bytes = static_cast<const std::uint8_t*>(LockResource(LoadResource(module, resource)));
    return std::vector<std::uint8_t>(bytes, bytes + SizeofResource(module, resource));
}

double mean(const std::vector<double>& values)
{
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double deviation(const std::vector<double>& values)
{
    const double middle = mean(values);
    double squares = 0;
    for (const double value : values) {
        squares += (value - middle) * (value - middle);
    }
    return std::sqrt(squares / static_cast<double>(values.size()));
}

// How far each value lies from the mean of its two neighbours.
std::vector<double> local_differences(const std::vector<double>& profile)
{
    std::vector<double> differences;
    for (std::size_t at = 1; at + 1 < profile.size(); ++at) {
        differences.push_back(profile[at] - (profile[at - 1] + profile[at + 1]) / 2);
    }
    return differences;
}

class Calibration_image_test : public testing::Test {
protected:
    // Read once: under the sanitizers each pass over six million pixels takes its time.
    static void SetUpTestSuite() { image() = embedded_image(); }
    void SetUp() override { ASSERT_EQ(image().size(), size); }

    static std::vector<std::uint8_t>& image()
    {
        static std::vector<std::uint8_t> bytes;
        return bytes;
    }

    static double pixel(int x, int y)
    {
        return image()[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)];
    }

    // The mean of each line of pixels that runs along an edge, by its distance from that edge; corners are left out.
    static std::vector<double> profile(int depth, int along, const std::function<double(int, int)>& at)
    {
        std::vector<double> means;
        for (int distance = 0; distance < depth; ++distance) {
            double sum = 0;
            for (int place = along / 4; place < along * 3 / 4; ++place) {
                sum += at(distance, place);
            }
            means.push_back(sum / (along / 2));
        }
        return means;
    }

    static void expect_smooth_fall_off(const std::vector<double>& from_edge)
    {
        EXPECT_LT(from_edge.front(), 30);
        EXPECT_GT(from_edge.back(), 210);
        // Single columns differ by their gain, which is no part of the fall-off.
        std::vector<double> lines;
        for (auto first = from_edge.begin(); from_edge.end() - first >= 8; ++first) {
            lines.push_back(mean(std::vector<double>(first, first + 8)));
        }
        std::vector<double> steps(lines.size());
        std::adjacent_difference(lines.begin(), lines.end(), steps.begin());
        steps.erase(steps.begin());
        EXPECT_THAT(steps, Each(AllOf(Gt(-0.5), Lt(4.0))));
        for (std::size_t at = 20; at < 170; ++at) {
            EXPECT_LT(lines[at - 20], lines[at]) << "at distance " << at;
        }
    }
};

TEST_F(Calibration_image_test, reaches_both_ends_of_its_range)
{
    const auto [low, high] = std::minmax_element(image().begin(), image().end());
    EXPECT_EQ(*low, 7);
    EXPECT_EQ(*high, 254);
}

TEST_F(Calibration_image_test, scanning_area_lies_between_210_and_230)
{
    std::vector<std::size_t> counts(256);
    std::size_t pixels = 0;
    for (int y = margin; y < height - margin; ++y) {
        for (int x = margin; x < width - margin; ++x, ++pixels) {
            ++counts[static_cast<std::size_t>(pixel(x, y))];
        }
    }
    const auto share = [&](std::size_t first, std::size_t last) {
        return static_cast<double>(std::accumulate(&counts[first], &counts[last] + 1, std::size_t{0})) /
               static_cast<double>(pixels);
    };
    EXPECT_GT(share(210, 230), 0.999);
    EXPECT_GT(share(218, 226), 0.5);
    EXPECT_LT(share(0, 204) + share(236, 255), 0.0001);  // defects are rare
}

TEST_F(Calibration_image_test, falls_off_smoothly_towards_the_left)
{
    expect_smooth_fall_off(profile(260, height, [](int distance, int y) { return pixel(distance, y); }));
}

TEST_F(Calibration_image_test, falls_off_smoothly_towards_the_right)
{
    expect_smooth_fall_off(profile(260, height, [](int distance, int y) { return pixel(width - 1 - distance, y); }));
}

TEST_F(Calibration_image_test, falls_off_smoothly_towards_the_top)
{
    expect_smooth_fall_off(profile(260, width, [](int distance, int x) { return pixel(x, distance); }));
}

TEST_F(Calibration_image_test, falls_off_smoothly_towards_the_bottom)
{
    expect_smooth_fall_off(profile(260, width, [](int distance, int x) { return pixel(x, height - 1 - distance); }));
}

TEST_F(Calibration_image_test, has_a_fine_and_small_grain)
{
    // Between two rows of the same columns only the grain differs; fine means that neighbours know nothing of each
    // other.
    std::vector<double> grain;
    std::vector<double> products;
    for (int y = margin; y + 1 < height - margin; y += 8) {
        for (int x = margin; x < width - margin; ++x) {
            const double difference = pixel(x, y + 1) - pixel(x, y);
            if (std::abs(difference) > 20) {
                continue;  // a hot pixel
            }
            if (x > margin) {
                products.push_back(difference * grain.back());
            }
            grain.push_back(difference);
        }
    }
    const double variance = deviation(grain) * deviation(grain);
    EXPECT_THAT(std::sqrt(variance / 2), AllOf(Ge(0.7), Le(2.5)));
    EXPECT_LT(std::abs(mean(products)), 0.05 * variance);
}

TEST_F(Calibration_image_test, has_a_faint_column_structure_and_no_rows)
{
    const auto column_means = profile(width - margin, height, [](int x, int y) { return pixel(x, y); });
    const auto row_means = profile(height - margin, width, [](int y, int x) { return pixel(x, y); });
    const std::vector<double> columns(column_means.begin() + margin, column_means.end());
    const std::vector<double> rows(row_means.begin() + margin, row_means.end());
    EXPECT_THAT(deviation(local_differences(columns)), AllOf(Ge(0.3), Le(2.0)));
    EXPECT_LT(deviation(local_differences(rows)), 0.1);
}

TEST_F(Calibration_image_test, is_the_same_whatever_compiler_built_its_generator)
{
    std::uint64_t checksum = 0xCBF29CE484222325U;  // FNV-1a
    for (const std::uint8_t byte : image()) {
        checksum = (checksum ^ byte) * 0x100000001B3U;
    }
    EXPECT_EQ(checksum, 0x1535A7AD32E62BD3U);
}

}  // namespace
