// One capture: video on an open scanner, several requests outstanding, every image into a file.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "drop_meter.h"
#include "frame_buffer.h"
#include "image_writer.h"
#include "session.h"

namespace vyra_tool {

// The buffers of a capture. They belong to the library while video runs, and after a stop that the scanner refused
// until the scanner is closed; and to the writer as long as a disk holds it up: they must outlive all of these.
class Capture_buffers {
public:
    explicit Capture_buffers(Image_size size);

    Frame_buffer& operator[](std::size_t index) { return buffers_[index]; }
    std::size_t count() const noexcept { return buffers_.size(); }

private:
    std::vector<Frame_buffer> buffers_;
};

struct Capture_plan {
    std::uint32_t mode = 1;
    Image_size size;
    std::uint64_t frames = 1;  // 0: until the user ends it
    std::chrono::milliseconds timeout{};
    std::string directory;
    std::string extension;
    Image_writer::Encoder encode;
};

// What a capture has brought so far.
struct Capture_result {
    using Number = std::uint64_t;

    Drop_meter meter;
    std::vector<std::pair<Number, Number>> images;  // runs of numbers, the last included: an endless capture has few
    std::size_t unwritten = 0;                      // images that were taken and have no file, for good
    std::string first_time, last_time;              // of the images (UTC)

    void add(Number number);
};

class Capture {
public:
    // Called whenever something happened: a file was written (its name) or a frame came (empty).
    using Listener = std::function<void(const Capture_result&, const std::string& file)>;

    // The listener may throw, which ends the capture.
    Capture(const Scanner& scanner, std::shared_ptr<Capture_buffers> buffers, const Capture_plan& plan,
            Listener listener);

    // Captures until the planned frames are taken or the user ends it. Video is stopped, and what was taken is written,
    // on every way out; only after an interrupt the writing has no more time than the interrupt leaves.
    void run();

    const Capture_result& result() const noexcept { return result_; }
    // The files written so far.
    std::vector<std::string> files() const;

private:
    bool complete() const noexcept { return plan_.frames != 0 && result_.meter.frames() >= plan_.frames; }
    void acquire();
    void fetch_all();
    bool fetch_one();
    void accept(std::size_t buffer);
    void submit_spare();
    void collect(std::chrono::milliseconds patience);
    void collect_rest();
    void give_up_rest();
    void expect_attached() const;
    void note_failure() noexcept;

    const Scanner& scanner_;
    std::shared_ptr<Capture_buffers> buffers_;
    const Capture_plan& plan_;
    Listener listener_;
    Image_folder folder_;
    Image_writer writer_;
    Capture_result result_;
    std::deque<std::size_t> spare_;
    std::size_t outstanding_ = 0;       // requests the library has
    Drop_meter::Time waiting_since_{};  // since then one of them waits for an image
    std::exception_ptr failure_;        // the first one
};

}  // namespace vyra_tool
