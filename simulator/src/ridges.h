// Drawing one fingerprint.
#pragma once

#include <cstdint>
#include <vector>

namespace brenvozulta_simulator {

// The area that a finger touches: an ellipse, upright, with its core at the centre.
struct Finger {
    double center_x;
    double center_y;
    double half_width;
    double half_height;
    std::uint64_t seed;
};

// Draws the finger's ridges, dark on what is there, into a grey image of 8 bits a pixel.
void draw_finger(const Finger& finger, std::vector<std::uint8_t>& pixels, int width, int height);

}  // namespace brenvozulta_simulator
