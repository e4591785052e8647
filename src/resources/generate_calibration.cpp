// Writes the flat-field calibration image that is embedded when no measured one is given: generate_calibration FILE.
//
// The image is made of what a real sensor under a real illumination shows: a bright, slightly domed field that falls
// off towards every edge, unevenness of the light, a gain of its own for every column and every pixel, the two
// alternating read-out channels, and a few hot pixels. All arithmetic is on 64-bit integers, without shifts of negative
// numbers, so that every compiler produces the same bytes; fractions are fixed-point numbers in which `one` stands
// for 1.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <vector>

namespace {

using Fixed = std::int64_t;

constexpr int width = 3216;
constexpr int height = 2004;
constexpr Fixed one = 1 << 16;

constexpr Fixed lowest = 7;     // the sensor's black level
constexpr Fixed highest = 254;  // a hot pixel
constexpr Fixed light = 219;    // what the brightest point adds to the black level

constexpr Fixed edge_light = one / 24;  // of the light, what is left at the middle of an edge
constexpr Fixed dome_depth = one / 28;  // by how much the field is darker half an image away from its brightest point
constexpr Fixed unevenness = one / 400;
constexpr Fixed column_gain = one / 340;
constexpr Fixed channel_gain = one / 900;
constexpr Fixed pixel_gain = one / 170;
constexpr Fixed read_noise = one * 2 / 5;  // in grey levels, without regard to the light
constexpr std::uint64_t pixels_per_hot_pixel = 90000;

// What the random numbers are for: each use has a sequence of its own.
enum class Stream : std::uint64_t { field = 1, column, pixel, reading, hot };

std::uint64_t random_bits(Stream stream, std::uint64_t index)
{
    std::uint64_t bits = (static_cast<std::uint64_t>(stream) << 56) + index + 1;
    bits *= 0x9E3779B97F4A7C15U;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
    return bits ^ (bits >> 31);
}

// Close to normally distributed, with mean 0 and standard deviation 1: the sum of eight bytes.
Fixed random_normal(Stream stream, std::uint64_t index)
{
    constexpr Fixed sum_mean = 1020;
    constexpr Fixed sum_deviation = 209;
    std::uint64_t bits = random_bits(stream, index);
    Fixed sum = 0;
    for (int byte = 0; byte < 8; ++byte, bits >>= 8) {
        sum += static_cast<Fixed>(bits & 0xFF);
    }
    return (sum - sum_mean) * one / sum_deviation;
}

Fixed product(Fixed a, Fixed b)
{
    return a * b / one;
}

// The share of the light at a distance from one edge: steepest at the edge, level where the fall-off ends.
Fixed edge_share(int distance, int reach)
{
    if (distance >= reach) {
        return one;
    }
    const Fixed rest = one - distance * one / reach;
    return one - product(one - edge_light, product(rest, product(rest, rest)));
}

// The share of the light along one axis: both edges and the dome between them.
std::vector<Fixed> axis_profile(int length, int first_reach, int last_reach, int brightest)
{
    std::vector<Fixed> profile(static_cast<std::size_t>(length));
    for (int at = 0; at < length; ++at) {
        const Fixed offset = (at - brightest) * one * 2 / length;
        const Fixed dome = one - product(dome_depth, product(offset, offset));
        const Fixed edges = product(edge_share(at, first_reach), edge_share(length - 1 - at, last_reach));
        profile[static_cast<std::size_t>(at)] = product(dome, edges);
    }
    return profile;
}

std::vector<Fixed> column_gains()
{
    std::vector<Fixed> gains(width);
    for (std::size_t x = 0; x < gains.size(); ++x) {
        gains[x] = product(column_gain, random_normal(Stream::column, x)) + (x % 2 == 0 ? channel_gain : -channel_gain);
    }
    return gains;
}

// The slow unevenness of the light: random values on a coarse lattice, joined smoothly.
Fixed uneven_light(int x, int y)
{
    constexpr int cell = 402;
    constexpr std::uint64_t cells_per_row = 16;
    const auto node = [](int column, int row) {
        return random_normal(Stream::field,
                             static_cast<std::uint64_t>(row) * cells_per_row + static_cast<std::uint64_t>(column));
    };
    const auto ease = [](Fixed t) { return product(product(t, t), 3 * one - 2 * t); };
    const Fixed across = ease(x % cell * one / cell);
    const Fixed down = ease(y % cell * one / cell);
    const int column = x / cell;
    const int row = y / cell;
    const Fixed upper = product(one - across, node(column, row)) + product(across, node(column + 1, row));
    const Fixed lower = product(one - across, node(column, row + 1)) + product(across, node(column + 1, row + 1));
    return product(unevenness, product(one - down, upper) + product(down, lower));
}

std::vector<char> calibration_image()
{
    const std::vector<Fixed> across = axis_profile(width, 205, 190, width / 2 + 70);
    const std::vector<Fixed> down = axis_profile(height, 180, 200, height / 2 - 40);
    const std::vector<Fixed> columns = column_gains();
    std::vector<char> image;
    image.reserve(std::size_t{width} * height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto column = static_cast<std::size_t>(x);
            const std::uint64_t index = image.size();
            const Fixed share = product(across[column], down[static_cast<std::size_t>(y)]);
            const Fixed gain =
                one + uneven_light(x, y) + columns[column] + product(pixel_gain, random_normal(Stream::pixel, index));
            Fixed level = light * product(share, gain) + product(read_noise, random_normal(Stream::reading, index));
            if (random_bits(Stream::hot, index) % pixels_per_hot_pixel == 0) {
                level = highest * one;
            }
            const Fixed value = std::clamp(lowest + (level + one / 2) / one, lowest, highest);
            image.push_back(static_cast<char>(static_cast<unsigned char>(value)));
        }
    }
    return image;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: generate_calibration FILE\n", stderr);
        return 2;
    }
    const std::vector<char> image = calibration_image();
    std::ofstream file(argv[1], std::ios::binary);
    file.write(image.data(), static_cast<std::streamsize>(image.size()));
    file.close();
    if (!file) {
        std::fprintf(stderr, "generate_calibration: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
