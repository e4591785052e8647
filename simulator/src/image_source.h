// Where the images of a capture come from.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brenvozulta_simulator {

struct Image {
    std::vector<std::uint8_t> pixels;
    std::uint16_t width;
    std::uint16_t height;
};

struct Image_request {
    std::uint16_t width;  // of the capture configuration
    std::uint16_t height;
    std::uint64_t scanner;  // the same for every image of one scanner
    std::uint64_t frame;    // 0 for the first image of a capture
};

// Called from several acquisition threads at once, without any lock of the simulator's.
class Image_source {
public:
    virtual ~Image_source() = default;
    // The image of a request: in scratch, whose memory is used again, or one that the source keeps. It stays valid as
    // long as both the source and scratch do.
    virtual const Image& image(const Image_request& request, Image& scratch) const = 0;
};

// Fingerprints made of ridges, a little different in place and pressure from frame to frame.
std::shared_ptr<const Image_source> synthetic_images(std::uint64_t seed);

// The PGM and PNG files of a folder in name order, over and over. Throws std::runtime_error with a message that names
// the folder or the file.
std::shared_ptr<const Image_source> folder_images(const std::string& folder);

}  // namespace brenvozulta_simulator
