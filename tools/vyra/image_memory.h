// Memory for an image of a size that nobody knows beforehand: the library and its driver write as many bytes as the
// scanner delivers. As much of it as is written is used, and no image is larger than all of it.
// image_memory_windows.cpp or image_memory_posix.cpp implements it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace vyra_tool {

class Image_memory {
public:
    // The first bytes are there from the start; the others when they are first written. Throws std::bad_alloc.
    explicit Image_memory(std::size_t expected);
    ~Image_memory();
    Image_memory(Image_memory&& other) noexcept : bytes_(std::exchange(other.bytes_, nullptr)) {}
    Image_memory& operator=(Image_memory&&) = delete;

    std::uint8_t* data() const noexcept { return bytes_; }

private:
    // The library gives out no image of more bytes than a signed 32-bit number counts.
    static constexpr std::size_t reserved = (std::size_t{1} << 31) + (std::size_t{1} << 20);

    std::uint8_t* bytes_;
};

}  // namespace vyra_tool
