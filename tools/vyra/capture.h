// One capture: video on an open scanner, several requests outstanding, every image into a file.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "drop_meter.h"
#include "frame_buffer.h"
#include "image_writer.h"
#include "session.h"

namespace vyra_tool {

struct Capture_plan {
    std::uint32_t mode = 1;
    Image_size size;
    std::uint64_t frames = 1;  // 0: until the user ends it
    std::chrono::milliseconds timeout{};
    std::string directory;
};

// The buffers of a capture. They belong to the library while video runs, and after a stop that the scanner refused
// until the scanner is closed: they must outlive both.
class Capture_buffers {
public:
    explicit Capture_buffers(Image_size size);

    Frame_buffer& operator[](std::size_t index) { return buffers_[index]; }
    std::size_t count() const noexcept { return buffers_.size(); }

private:
    std::vector<Frame_buffer> buffers_;
};

class Capture {
public:
    // Called whenever something happened: a file was written (its name) or a frame came (empty).
    using Listener = std::function<void(const Capture&, const std::string& file)>;

    // The listener may throw, which ends the capture.
    Capture(const Scanner& scanner, Capture_buffers& buffers, const Capture_plan& plan, Listener listener);

    // Captures until the planned frames are in their files or the user ends it. Video is stopped on every way out.
    void run();

    const Drop_meter& meter() const noexcept { return meter_; }

private:
    bool complete() const noexcept { return plan_.frames != 0 && meter_.frames() >= plan_.frames; }
    void fetch_all();
    bool fetch_one();
    void accept(std::size_t buffer);
    void submit_spare();
    void collect(std::chrono::milliseconds patience);
    void check_patience() const;

    const Scanner& scanner_;
    Capture_buffers& buffers_;
    const Capture_plan& plan_;
    Listener listener_;
    Image_writer writer_;
    Drop_meter meter_;
    std::deque<std::size_t> spare_;
    std::size_t outstanding_ = 0;  // requests the library has
    std::size_t unwritten_ = 0;    // images the writer has
    Drop_meter::Time last_frame_{};
};

}  // namespace vyra_tool
