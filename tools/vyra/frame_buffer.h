// A buffer for one image that notices when the image it received has another size than expected. The library passes no
// size with an image and compares none: it writes as many bytes as the scanner delivers.
#pragma once

#include <cstdint>
#include <memory>

#include "png_writer.h"

namespace vyra_tool {

class Frame_buffer {
public:
    enum class Fit { exact, smaller, larger };

    explicit Frame_buffer(Image_size size);

    // Marks the end of the image and what lies behind it; to be called before each request.
    void prepare();
    // Whether the image that was written since fills its place exactly.
    Fit fit() const;

    std::uint8_t* data() noexcept { return bytes_.get(); }

private:
    Image_size size_;
    std::unique_ptr<std::uint8_t[]> bytes_;
};

}  // namespace vyra_tool
