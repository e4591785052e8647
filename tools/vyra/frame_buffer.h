// A buffer for one image that notices when the image it received has another size than expected. The library passes no
// size with an image and compares none: it writes as many bytes as the scanner delivers.
#pragma once

#include <cstdint>
#include <string>

#include "image_memory.h"
#include "image_size.h"

namespace vyra_tool {

class Frame_buffer {
public:
    enum class Fit { exact, smaller, larger };

    explicit Frame_buffer(Image_size size);

    // Marks the end of the image and what lies behind it; to be called before each request.
    void prepare();
    // Whether the image that was written since fills its place exactly. An image of another shape with as many bytes
    // does, and so may one that lacks fewer bytes than the mark has.
    Fit fit() const;

    std::uint8_t* data() const noexcept { return memory_.data(); }

    // Throws the Failure of an image that does not fit: "WHAT larger than 1600 x 1500 pixels".
    void expect_fit(const std::string& what) const;

private:
    Image_size size_;
    Image_memory memory_;
};

}  // namespace vyra_tool
