// Encodes captured images and writes them to files on threads of its own, so that the capture never waits for a disk.
#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "image_folder.h"

namespace vyra_tool {

struct Taken_image {
    std::size_t buffer;
    const std::uint8_t* pixels;
    std::string time;  // when it was taken
};

class Image_writer {
public:
    using Encoder = std::function<std::vector<std::uint8_t>(const Taken_image&)>;

    struct Written {
        std::size_t buffer;
        std::uint64_t number = 0;       // of the file in the folder
        std::exception_ptr error = {};  // why there is no file
    };

    // Writes into the folder on as many threads as there are processors, but on two to four, or on fewer when the
    // system gives no more. The encoder is called by all of them. The owner keeps what the images' pixels lie in.
    Image_writer(Image_folder folder, Encoder encode, std::shared_ptr<void> owner);
    // Gives up the images that are still to be begun, and waits for the others unless they were abandoned.
    ~Image_writer();
    Image_writer(const Image_writer&) = delete;
    Image_writer& operator=(const Image_writer&) = delete;

    // Takes an image that must stay where it is until take gives its buffer back.
    void put(const Taken_image& image);
    // The next image in the order in which they were put, once it is written or could not be; waited for at most this
    // long.
    std::optional<Written> take(std::chrono::milliseconds patience);
    // How many were put and not yet taken.
    std::size_t pending() const;
    // Waits for nothing any more and leaves what a disk holds up to the disk. Returns the images that are finished and
    // not taken; nothing comes after them.
    std::vector<Written> abandon();

private:
    class Work;

    std::shared_ptr<Work> work_;
    std::vector<std::thread> threads_;
};

}  // namespace vyra_tool
