#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <mutex>
#include <random>
#include <tuple>

#include "image_source.h"
#include "ridges.h"

namespace brenvozulta_simulator {
namespace {

constexpr int margin = 12;  // room around the drawn picture in which frames move
constexpr int background = 236;

struct Picture {
    int width;
    int height;
    std::vector<std::uint8_t> pixels;
};

// A wide area shows a single finger rolled from nail to nail, any other a hand's four fingers side by side.
std::vector<Finger> fingers_of(int width, int height, std::uint64_t seed)
{
    const double w = width;
    const double h = height;
    if (w > 1.3 * h) {
        return {{w / 2, h * 0.52, std::min(w * 0.38, h * 0.62), h * 0.44, seed}};
    }
    constexpr double across[] = {0.15, 0.38, 0.61, 0.84};
    constexpr double down[] = {0.52, 0.40, 0.44, 0.60};
    std::vector<Finger> fingers;
    fingers.reserve(4);
    for (int i = 0; i < 4; ++i) {
        fingers.push_back({w * across[i], h * down[i], w * 0.098, h * 0.165, seed * 4 + static_cast<unsigned>(i) + 1});
    }
    return fingers;
}

std::shared_ptr<const Picture> draw(std::uint16_t width, std::uint16_t height, std::uint64_t seed)
{
    auto picture = std::make_shared<Picture>();
    picture->width = width + 2 * margin;
    picture->height = height + 2 * margin;
    picture->pixels.resize(static_cast<std::size_t>(picture->width) * static_cast<std::size_t>(picture->height));
    // The platen's own faint grain.
    std::mt19937_64 random(seed);
    std::generate(picture->pixels.begin(), picture->pixels.end(),
                  [&random] { return static_cast<std::uint8_t>(background + (random() >> 61)); });
    for (const Finger& finger : fingers_of(picture->width, picture->height, seed)) {
        draw_finger(finger, picture->pixels, picture->width, picture->height);
    }
    return picture;
}

// The pressure of a frame as a table from drawn to delivered grey: the firmer, the darker the ridges.
std::array<std::uint8_t, 256> pressure_table(double pressure)
{
    std::array<std::uint8_t, 256> table{};
    for (std::size_t grey = 0; grey < table.size(); ++grey) {
        const double depth = (background - static_cast<double>(grey)) * pressure;
        table[grey] = static_cast<std::uint8_t>(std::lround(std::clamp(background - depth, 0.0, 255.0)));
    }
    return table;
}

// Pictures are drawn once for each size and scanner; each frame is a cheap variation: moved by a few pixels, as a
// finger that is never quite still, and pressed harder or softer.
class Synthetic_images : public Image_source {
public:
    explicit Synthetic_images(std::uint64_t seed) : seed_(seed) {}

    const Image& image(const Image_request& request, Image& scratch) const override
    {
        const std::shared_ptr<const Picture> base = picture(request);
        const double time = static_cast<double>(request.frame) * 0.21;
        const int x =
            margin + static_cast<int>(std::lround((margin - 2) * std::sin(time * 0.83) * std::sin(time * 0.31)));
        const int y = margin + static_cast<int>(std::lround((margin - 2) * std::sin(time * 0.57)));
        const auto table = pressure_table(0.93 + 0.1 * std::sin(time));
        scratch.width = request.width;
        scratch.height = request.height;
        scratch.pixels.resize(std::size_t{request.width} * request.height);
        for (int row = 0; row < request.height; ++row) {
            const std::uint8_t* from = base->pixels.data() + static_cast<std::ptrdiff_t>(row + y) * base->width + x;
            std::uint8_t* to = scratch.pixels.data() + static_cast<std::ptrdiff_t>(row) * request.width;
            std::transform(from, from + request.width, to, [&table](std::uint8_t grey) { return table[grey]; });
        }
        return scratch;
    }

private:
    using Key = std::tuple<std::uint16_t, std::uint16_t, std::uint64_t>;

    // Of one picture, which is drawn once, while others are drawn as well.
    struct Place {
        std::mutex lock;  // guards picture, and is held while it is drawn; no lock is taken inside
        std::shared_ptr<const Picture> picture;
    };

    std::shared_ptr<const Picture> picture(const Image_request& request) const
    {
        const std::shared_ptr<Place> place = place_of(Key(request.width, request.height, request.scanner));
        const std::lock_guard<std::mutex> held(place->lock);
        if (place->picture == nullptr) {
            place->picture = draw(request.width, request.height, seed_ * 0x9E3779B97F4A7C15U + request.scanner);
        }
        return place->picture;
    }

    std::shared_ptr<Place> place_of(const Key& key) const
    {
        const std::lock_guard<std::mutex> held(lock_);
        auto& place = places_[key];
        if (place == nullptr) {
            place = std::make_shared<Place>();
        }
        return place;
    }

    const std::uint64_t seed_;
    mutable std::mutex lock_;  // guards places_; no lock is taken inside
    mutable std::map<Key, std::shared_ptr<Place>> places_;
};

}  // namespace

std::shared_ptr<const Image_source> synthetic_images(std::uint64_t seed)
{
    return std::make_shared<const Synthetic_images>(seed);
}

}  // namespace brenvozulta_simulator
