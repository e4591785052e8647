#include "capture.h"

#include <cstdio>
#include <utility>

#include "failure.h"
#include "interrupt.h"
#include "presence.h"

namespace vyra_tool {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double pixels_per_inch = 500;
constexpr std::size_t wanted_requests = 4;
constexpr std::size_t buffer_count = 16;  // the others wait for the writer
// The library tells at once that no image is ready; between two questions one processor need not be busy.
constexpr std::chrono::milliseconds frame_poll_interval{1};

std::string dimensions(Image_size size)
{
    return std::to_string(size.width) + " x " + std::to_string(size.height);
}

}  // namespace

Capture_buffers::Capture_buffers(Image_size size)
{
    for (std::size_t i = 0; i < buffer_count; ++i) {
        buffers_.emplace_back(size);
    }
}

Capture::Capture(const Scanner& scanner, Capture_buffers& buffers, const Capture_plan& plan, Listener listener)
    : scanner_(scanner),
      buffers_(buffers),
      plan_(plan),
      listener_(std::move(listener)),
      writer_(plan.directory, plan.size, pixels_per_inch)
{
    for (std::size_t i = 0; i < buffers.count(); ++i) {
        spare_.push_back(i);
    }
}

void Capture::run()
{
    Video video(scanner_, plan_.mode);
    last_frame_ = Clock::now();
    while (!complete() && !interrupted()) {
        submit_spare();
        fetch_all();
        collect(complete() ? std::chrono::milliseconds(0) : frame_poll_interval);
        check_patience();
    }
    video.stop();
    while (unwritten_ > 0) {
        collect(std::chrono::milliseconds(100));
    }
}

// Fetches what is ready, at most as many images as there were requests at the beginning: when all of them were filled,
// the scanner may have found no empty buffer for the next image.
void Capture::fetch_all()
{
    for (std::size_t requests = outstanding_; requests > 0 && !complete(); --requests) {
        if (!fetch_one()) {
            meter_.waiting(Clock::now());
            return;
        }
        if (requests == 1) {
            meter_.starved();
        }
        submit_spare();
    }
}

bool Capture::fetch_one()
{
    void* data = nullptr;
    std::uint64_t buffer = 0;
    const int status = VyraGetVideoResult(scanner_.handle(), &data, &buffer);
    if (status == VYRA_VIDEO_TIMEOUT) {
        return false;
    }
    check(status, "fetch an image from \"" + scanner_.name() + "\"");
    --outstanding_;
    accept(static_cast<std::size_t>(buffer));
    return true;
}

void Capture::accept(std::size_t buffer)
{
    last_frame_ = Clock::now();
    if (const Frame_buffer::Fit fit = buffers_[buffer].fit(); fit != Frame_buffer::Fit::exact) {
        throw Failure("the scanner sends images that are " +
                          std::string(fit == Frame_buffer::Fit::larger ? "larger" : "smaller") + " than " +
                          dimensions(plan_.size) + " pixels",
                      "give their size with --size WxH");
    }
    meter_.frame(last_frame_);
    writer_.put(buffer, buffers_[buffer].data());
    ++unwritten_;
    listener_(*this, {});
}

void Capture::submit_spare()
{
    while (outstanding_ < wanted_requests && !spare_.empty()) {
        const std::size_t buffer = spare_.front();
        buffers_[buffer].prepare();
        check(VyraSubmitVideoRequest(scanner_.handle(), buffers_[buffer].data(), buffer),
              "ask \"" + scanner_.name() + "\" for an image");
        spare_.pop_front();
        ++outstanding_;
    }
}

void Capture::collect(std::chrono::milliseconds patience)
{
    while (const auto written = writer_.take(patience)) {
        --unwritten_;
        spare_.push_back(written->buffer);
        listener_(*this, written->file);
        patience = std::chrono::milliseconds(0);
    }
}

void Capture::check_patience() const
{
    if (presence(scanner_.name()).removals > 0) {
        throw Failure("the scanner \"" + scanner_.name() + "\" was unplugged during the capture", VYRA_DEVICE_UNAVAIL);
    }
    if (outstanding_ > 0 && Clock::now() - last_frame_ > plan_.timeout) {
        char seconds[32];
        std::snprintf(seconds, sizeof seconds, "%g", std::chrono::duration<double>(plan_.timeout).count());
        throw Failure("no image from \"" + scanner_.name() + "\" for " + seconds + " seconds", VYRA_VIDEO_TIMEOUT);
    }
}

}  // namespace vyra_tool
