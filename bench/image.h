// The images that every side of a figure moves.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

constexpr std::uint16_t image_width = 1608;
constexpr std::uint16_t image_height = 1000;
constexpr std::size_t image_size = std::size_t{image_width} * image_height;

// The same memory for all sides: where it lies decides how fast it is copied.
inline const std::uint8_t* driver_image()
{
    static const std::vector<std::uint8_t> pixels(image_size, 0x5A);
    return pixels.data();
}

// As many as can be outstanding.
constexpr std::size_t host_buffers = 8;

inline std::uint8_t* host_buffer(std::size_t number)
{
    static std::vector<std::uint8_t> pixels(host_buffers * image_size);
    return pixels.data() + number % host_buffers * image_size;
}

inline void copy_image(std::uint8_t* buffer)
{
    std::memcpy(buffer, driver_image(), image_size);
    __asm__ __volatile__("" : : "r"(buffer) : "memory");
}
