#include "frame_buffer.h"

#include <algorithm>
#include <array>

#include "failure.h"

namespace vyra_tool {
namespace {

constexpr std::size_t guard_bytes = 4096;

// The mark at the end of an image and, over and over, behind it. Long enough that no image bears it by chance; without
// a likeness to neighbouring pixels, and to an image of one colour.
constexpr std::array<std::uint8_t, 4> mark{0x1D, 0xE6, 0x54, 0xAB};

}  // namespace

Frame_buffer::Frame_buffer(Image_size size) : size_(size), memory_(size.bytes() + guard_bytes) {}

void Frame_buffer::prepare()
{
    for (std::size_t i = 0; i < guard_bytes; ++i) {
        data()[size_.bytes() + i] = mark[i % mark.size()];
    }
    if (size_.bytes() >= mark.size()) {
        std::copy(mark.begin(), mark.end(), data() + size_.bytes() - mark.size());
    }
}

Frame_buffer::Fit Frame_buffer::fit() const
{
    const std::uint8_t* const end = data() + size_.bytes();
    for (std::size_t i = 0; i < guard_bytes; ++i) {
        if (end[i] != mark[i % mark.size()]) {
            return Fit::larger;
        }
    }
    const bool marked = size_.bytes() >= mark.size() && std::equal(mark.begin(), mark.end(), end - mark.size());
    return marked ? Fit::smaller : Fit::exact;
}

void Frame_buffer::expect_fit(const std::string& what) const
{
    if (const Fit seen = fit(); seen != Fit::exact) {
        throw Failure(what + (seen == Fit::larger ? " larger than " : " smaller than ") + text_of(size_),
                      "give the size with --size WxH");
    }
}

}  // namespace vyra_tool
