#include "capture.h"

#include <cstdio>
#include <utility>

#include "failure.h"
#include "interrupt.h"
#include "presence.h"
#include "utc_time.h"

namespace vyra_tool {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t wanted_requests = 4;
constexpr std::size_t buffer_count = 24;  // the others wait for the writer
// The library tells at once that no image is ready; between two questions one processor need not be busy.
constexpr std::chrono::milliseconds frame_poll_interval{1};
constexpr std::chrono::milliseconds rest_poll_interval{50};

// Between its start and its stop nothing but sleep stops a video.
void check_running(int status, const std::string& what)
{
    if (status == VYRA_SCN_UNAVAILABLE || status == VYRA_VIDEO_STOPPED) {
        throw Failure("the computer went to sleep during the capture", status,
                      "keep the computer awake and capture again");
    }
    check(status, what);
}

}  // namespace

Capture_buffers::Capture_buffers(Image_size size)
{
    for (std::size_t i = 0; i < buffer_count; ++i) {
        buffers_.emplace_back(size);
    }
}

void Capture_result::add(Number number)
{
    if (!images.empty() && images.back().second + 1 == number) {
        ++images.back().second;
    } else {
        images.emplace_back(number, number);
    }
}

Capture::Capture(const Scanner& scanner, std::shared_ptr<Capture_buffers> buffers, const Capture_plan& plan,
                 Listener listener)
    : scanner_(scanner),
      buffers_(std::move(buffers)),
      plan_(plan),
      listener_(std::move(listener)),
      folder_(plan.directory, plan.extension),
      writer_(folder_, plan.encode, buffers_)
{
    for (std::size_t i = 0; i < buffers_->count(); ++i) {
        spare_.push_back(i);
    }
}

void Capture::run()
{
    try {
        acquire();
    } catch (...) {
        note_failure();
    }
    collect_rest();
    if (failure_) {
        std::rethrow_exception(failure_);
    }
}

std::vector<std::string> Capture::files() const
{
    std::vector<std::string> files;
    for (const auto& [first, last] : result_.images) {
        for (std::uint64_t number = first; number <= last; ++number) {
            files.push_back(folder_.path(number));
        }
    }
    return files;
}

void Capture::acquire()
{
    Video video(scanner_, plan_.mode);
    while (true) {
        submit_spare();
        fetch_all();
        if (complete() || interrupted()) {
            break;
        }
        collect(frame_poll_interval);
        expect_attached();
    }
    video.stop();
}

// Fetches what is ready, at most as many images as there were requests at the beginning: when all of them were filled,
// the scanner may have found no empty buffer for the next image.
void Capture::fetch_all()
{
    for (std::size_t requests = outstanding_; requests > 0 && !complete(); --requests) {
        const auto now = Clock::now();
        if (!fetch_one()) {
            result_.meter.waiting(now);
            // Of the scanner's silence alone: not while all buffers are with the writer, nor while this thread was
            // away.
            if (now - waiting_since_ > plan_.timeout) {
                char seconds[32];
                std::snprintf(seconds, sizeof seconds, "%g", std::chrono::duration<double>(plan_.timeout).count());
                throw Failure("no image from \"" + scanner_.name() + "\" for " + seconds + " seconds",
                              VYRA_VIDEO_TIMEOUT);
            }
            return;
        }
        if (requests == 1) {
            result_.meter.starved();
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
    check_running(status, "fetch an image from \"" + scanner_.name() + "\"");
    --outstanding_;
    accept(static_cast<std::size_t>(buffer));
    return true;
}

void Capture::accept(std::size_t buffer)
{
    waiting_since_ = Clock::now();
    Frame_buffer& image = (*buffers_)[buffer];
    image.expect_fit("the scanner sends images that are");
    result_.meter.frame(waiting_since_);
    result_.last_time = utc_text(std::chrono::system_clock::now());
    if (result_.first_time.empty()) {
        result_.first_time = result_.last_time;
    }
    writer_.put({buffer, image.data(), result_.last_time});
    listener_(result_, {});
}

void Capture::submit_spare()
{
    while (outstanding_ < wanted_requests && !spare_.empty()) {
        const std::size_t buffer = spare_.front();
        (*buffers_)[buffer].prepare();
        check_running(VyraSubmitVideoRequest(scanner_.handle(), (*buffers_)[buffer].data(), buffer),
                      "ask \"" + scanner_.name() + "\" for an image");
        spare_.pop_front();
        if (++outstanding_ == 1) {
            waiting_since_ = Clock::now();
        }
    }
}

void Capture::collect(std::chrono::milliseconds patience)
{
    while (const auto written = writer_.take(patience)) {
        spare_.push_back(written->buffer);
        if (written->error) {
            ++result_.unwritten;
            std::rethrow_exception(written->error);
        }
        result_.add(written->number);
        listener_(result_, folder_.path(written->number));
        patience = std::chrono::milliseconds(0);
    }
}

// Every image that was taken has its chance, whatever ended the capture and whatever became of the image before it.
void Capture::collect_rest()
{
    while (writer_.pending() > 0 && !grace_is_over()) {
        try {
            collect(rest_poll_interval);
        } catch (...) {
            note_failure();
        }
    }
    try {
        give_up_rest();
    } catch (...) {
        note_failure();
    }
}

void Capture::give_up_rest()
{
    std::size_t late = writer_.pending();
    if (late == 0) {
        return;
    }
    std::vector<std::uint64_t> finished;
    for (const Image_writer::Written& written : writer_.abandon()) {
        if (!written.error) {
            finished.push_back(written.number);
            result_.add(written.number);
            --late;
        }
    }
    result_.unwritten += late;
    for (const std::uint64_t number : finished) {
        listener_(result_, folder_.path(number));
    }
    throw Failure("interrupted: the disk had no time for " + std::to_string(late) + " images",
                  "capture to a faster disk", Cause::file);
}

void Capture::expect_attached() const
{
    if (presence(scanner_.name()).removals > 0) {
        throw Failure("the scanner \"" + scanner_.name() + "\" was unplugged during the capture", VYRA_DEVICE_UNAVAIL,
                      {}, Cause::scanner_gone);
    }
}

void Capture::note_failure() noexcept
{
    if (!failure_) {
        failure_ = std::current_exception();
    }
}

}  // namespace vyra_tool
