#include "ridges.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>

namespace brenvozulta_simulator {
namespace {

using Phase = std::complex<float>;

constexpr double pi = 3.14159265358979323846;
constexpr double ridge_period = 9.5;  // pixels at 500 ppi
constexpr int grid = 4;               // most of the phase is smooth: a coarse grid of it is enough
constexpr float ridge_grey = 58;
constexpr float valley_grey = 214;

// The library's distributions differ between platforms; the engines do not.
class Random {
public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}
    double uniform(double low, double high)
    {
        return low + (high - low) * static_cast<double>(engine_() >> 11) * (1.0 / 9007199254740992.0);
    }

private:
    std::mt19937_64 engine_;
};

struct Minutia {
    double x;
    double y;
    bool against;  // the direction in which the additional ridge runs
};

struct Wave {
    double x_frequency;
    double y_frequency;
    double phase;
    double amplitude;
    double at(double x, double y) const { return amplitude * std::sin(x_frequency * x + y_frequency * y + phase); }
};

// The ridges of one finger as a phase that rises by one turn from ridge to ridge: the distance from a core around which
// the ridges bend, warped a little, plus one turn around each minutia, where a ridge therefore begins or ends.
class Ridge_phase {
public:
    explicit Ridge_phase(const Finger& finger) : finger_(finger), random_(finger.seed)
    {
        lean_ = static_cast<float>(random_.uniform(-0.22, 0.22));
        narrow_ = static_cast<float>(random_.uniform(1.15, 1.45));
        flatten_ = static_cast<float>(random_.uniform(0.55, 0.75));
        for (Wave& wave : waves_) {
            const double length = random_.uniform(110, 260);
            const double angle = random_.uniform(0, 2 * pi);
            wave = {2 * pi / length * std::cos(angle), 2 * pi / length * std::sin(angle), random_.uniform(0, 2 * pi),
                    random_.uniform(2.0, 4.5)};
        }
        const int count = static_cast<int>(finger.half_width * finger.half_height / 900);
        for (int i = 0; i < std::min(count, 90); ++i) {
            const double angle = random_.uniform(0, 2 * pi);
            const double radius = std::sqrt(random_.uniform(0.01, 0.95));
            minutiae_.push_back({finger.center_x + finger.half_width * radius * std::cos(angle),
                                 finger.center_y + finger.half_height * radius * std::sin(angle), i % 2 == 0});
        }
    }

    // The turns around all minutiae at a place, as a number on the unit circle.
    Phase turns(double x, double y) const
    {
        Phase product(1, 0);
        for (const Minutia& minutia : minutiae_) {
            const Phase from(static_cast<float>(x - minutia.x), static_cast<float>(y - minutia.y));
            product *= minutia.against ? std::conj(from) : from;
            product /= std::abs(product) + 1e-12F;
        }
        return product;
    }

    // How far the skin's unevenness moves a place.
    float bend(double x, double y) const
    {
        double sum = 0;
        for (const Wave& wave : waves_) {
            sum += wave.at(x, y);
        }
        return static_cast<float>(sum);
    }

    // The smooth part of the phase at a place that is bent so far.
    float flow(int x, int y, float bend) const
    {
        const auto down = static_cast<float>(y - finger_.center_y) - 0.7F * bend;
        const float right = static_cast<float>(x - finger_.center_x) + bend + lean_ * down;
        // Arches above the core, a loop around it whose legs open towards the base below.
        const float below = std::max(0.0F, down) / static_cast<float>(finger_.half_height);
        const float across = narrow_ * right / (1 + 0.45F * below * below);
        const float along = down < 0 ? down : down * flatten_;
        return std::sqrt(across * across + along * along + 40) * static_cast<float>(2 * pi / ridge_period);
    }

private:
    const Finger& finger_;
    Random random_;
    float lean_ = 0;
    float narrow_ = 0;
    float flatten_ = 0;
    Wave waves_[6]{};
    std::vector<Minutia> minutiae_;
};

// What is smooth about the phase over an area: known at the points of a coarse grid and interpolated between them.
class Phase_grid {
public:
    struct Point {
        Phase turn;
        float bend;
    };

    Phase_grid(const Ridge_phase& phase, int left, int top, int right, int bottom)
        : left_(left), top_(top), columns_((right - left) / grid + 2)
    {
        const int rows = (bottom - top) / grid + 2;
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns_; ++column) {
                const double x = left + column * grid;
                const double y = top + row * grid;
                points_.push_back({phase.turns(x, y), phase.bend(x, y)});
            }
        }
    }

    Point at(int x, int y) const
    {
        const int column = (x - left_) / grid;
        const int row = (y - top_) / grid;
        const float across = static_cast<float>((x - left_) % grid) / grid;
        const float down = static_cast<float>((y - top_) % grid) / grid;
        const Point* upper = &points_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                                      static_cast<std::size_t>(column)];
        return between(between(upper[0], upper[1], across), between(upper[columns_], upper[columns_ + 1], across),
                       down);
    }

private:
    static Point between(const Point& from, const Point& to, float share)
    {
        return {from.turn + (to.turn - from.turn) * share, from.bend + (to.bend - from.bend) * share};
    }

    const int left_;
    const int top_;
    const int columns_;
    std::vector<Point> points_;
};

float smooth_step(float from, float to, float value)
{
    const float t = std::clamp((value - from) / (to - from), 0.0F, 1.0F);
    return t * t * (3 - 2 * t);
}

// How firmly the skin touches at a place: 1 inside the ellipse, 0 outside, with an edge that is not quite even.
float contact(const Finger& finger, const Wave& edge, double x, double y)
{
    const double across = (x - finger.center_x) / finger.half_width;
    const double down = (y - finger.center_y) / finger.half_height;
    const double radius = std::sqrt(across * across + down * down);
    return 1 - smooth_step(0.88F, 1.0F, static_cast<float>(radius + edge.at(x, y)));
}

}  // namespace

void draw_finger(const Finger& finger, std::vector<std::uint8_t>& pixels, int width, int height)
{
    const int left = std::max(0, static_cast<int>(finger.center_x - finger.half_width * 1.05));
    const int right = std::min(width, static_cast<int>(finger.center_x + finger.half_width * 1.05) + 1);
    const int top = std::max(0, static_cast<int>(finger.center_y - finger.half_height * 1.05));
    const int bottom = std::min(height, static_cast<int>(finger.center_y + finger.half_height * 1.05) + 1);
    if (left >= right || top >= bottom) {
        return;
    }
    const Ridge_phase phase(finger);
    const Phase_grid phases(phase, left, top, right, bottom);
    const Wave edge{3.1 / finger.half_width, 3.7 / finger.half_height, static_cast<double>(finger.seed % 7), 0.025};
    Random pores(finger.seed + 1);
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            const float pore = static_cast<float>(pores.uniform(-1, 1));
            const float touch = contact(finger, edge, x, y);
            if (touch <= 0) {
                continue;
            }
            const Phase_grid::Point point = phases.at(x, y);
            const float flow = phase.flow(x, y, point.bend);
            const float wave = std::cos(flow) * point.turn.real() - std::sin(flow) * point.turn.imag();
            const float ridge = 0.5F + 0.5F * std::tanh(2.2F * wave + 0.35F * pore);
            std::uint8_t& pixel =
                pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
            const float skin = valley_grey + (ridge_grey - valley_grey) * ridge;
            const auto bare = static_cast<float>(pixel);
            pixel = static_cast<std::uint8_t>(std::lround(bare + (skin - bare) * touch));
        }
    }
}

}  // namespace brenvozulta_simulator
