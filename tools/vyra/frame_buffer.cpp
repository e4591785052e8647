#include "frame_buffer.h"

#include <algorithm>

namespace vyra_tool {
namespace {

// Room for images of a wrong size, as large as the whole sensor delivers them at its finest, so that one is noticed and
// does no harm.
constexpr std::size_t smallest_room = std::size_t{3216} * 3216;
constexpr std::size_t guard_bytes = 4096;

// What stands at index of an unwritten place: no image shows it by chance over a whole row.
std::uint8_t mark(std::size_t index)
{
    const std::uint32_t mixed = static_cast<std::uint32_t>(index) * 2654435761U;
    return static_cast<std::uint8_t>(mixed >> 24);
}

}  // namespace

// Pages that no image reaches are never written and cost nothing.
Frame_buffer::Frame_buffer(Image_size size)
    : size_(size), bytes_(new std::uint8_t[std::max(smallest_room, size.bytes() + guard_bytes)])
{
}

void Frame_buffer::prepare()
{
    for (std::size_t i = size_.bytes() - size_.width; i < size_.bytes() + guard_bytes; ++i) {
        bytes_[i] = mark(i);
    }
}

Frame_buffer::Fit Frame_buffer::fit() const
{
    const auto unwritten = [this](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i) {
            if (bytes_[i] != mark(i)) {
                return false;
            }
        }
        return true;
    };
    if (!unwritten(size_.bytes(), size_.bytes() + guard_bytes)) {
        return Fit::larger;
    }
    return unwritten(size_.bytes() - size_.width, size_.bytes()) ? Fit::smaller : Fit::exact;
}

}  // namespace vyra_tool
