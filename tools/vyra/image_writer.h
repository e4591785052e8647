// Encodes captured images and writes them to files on a thread of its own, so that the capture never waits for a disk.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "png_writer.h"

namespace vyra_tool {

class Image_writer {
public:
    struct Written {
        std::size_t buffer;
        std::string file;
    };

    // Writes image_0001.png and so on into the directory, past the numbers that are taken already.
    Image_writer(std::string directory, Image_size size, double pixels_per_inch);
    // Waits for the image that is being written and gives up those behind it.
    ~Image_writer();
    Image_writer(const Image_writer&) = delete;
    Image_writer& operator=(const Image_writer&) = delete;

    // Takes an image that must stay where it is until take gives its buffer back.
    void put(std::size_t buffer, const std::uint8_t* pixels);
    // The next written image, waited for at most this long. Throws the Failure of a file that could not be written.
    std::optional<Written> take(std::chrono::milliseconds patience);

private:
    struct Job {
        std::size_t buffer;
        const std::uint8_t* pixels;
    };

    void work();
    std::string next_file();

    const std::string directory_;
    const Image_size size_;
    const double pixels_per_inch_;
    unsigned number_ = 0;  // of the file written last; the thread's own

    // Guards everything below it. Nothing else is taken and no file is touched while it is held.
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Job> jobs_;
    std::deque<Written> written_;
    std::exception_ptr error_;
    bool ending_ = false;

    std::thread thread_;  // last: it uses all of the above
};

}  // namespace vyra_tool
