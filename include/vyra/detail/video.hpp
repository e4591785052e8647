// Video as an object. Part of vyra.hpp.
#ifndef VYRA_DETAIL_VIDEO_HPP
#define VYRA_DETAIL_VIDEO_HPP

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include "basics.hpp"
#include "scanner.hpp"

namespace vyra {

// Running video of a scanner.
class video {
public:
    // Takes 200 ms. Throws error (9114: the scanner does not have this way of capturing), and std::logic_error when
    // video of any scanner runs already or another scanner was opened since: images would not come, or those of the
    // other scanner into buffers that may be too small for them.
    video(vyra::scanner& scanner, mode mode) : scanner_(scanner), size_(size_of(mode)), ends_(scanner.ends_)
    {
        scanner_.refuse_beside_video();
        refuse_silenced();
        const auto number = static_cast<std::uint32_t>(mode);
        if (const auto status = functions().VyraBrenvoStartVideo(scanner_.handle(), number, 0)) {
            functions().VyraStopVideo(scanner_.handle());  // a start that failed half-way may have left a capture
            throw error("start video on \"" + scanner_.name() + "\"", status);
        }
        scanner_.has_video_ = true;
    }

    // The buffers are the host's when this has returned. A scanner that refuses to stop, for instance an unplugged one,
    // is closed: that alone makes sure of it.
    ~video()
    {
        if (scanner_.has_video_ && functions().VyraStopVideo(scanner_.handle()) != VYRA_OK) {
            scanner_.close();
        }
        scanner_.has_video_ = false;
    }
    video(const video&) = delete;
    video& operator=(const video&) = delete;

    // What each image measures, and each buffer must hold.
    image_size size() const noexcept { return size_; }

    // Hands in an empty buffer for one image, at most VYRA_MAX_VIDEO_REQUESTS at a time, without waiting. Two or more
    // let no image be lost. Throws std::invalid_argument for a buffer smaller than an image, and error (9104: eight are
    // handed in; 9105: the video has ended, as it does when the computer sleeps).
    void submit(std::uint8_t* buffer, std::size_t bytes, std::uint64_t context = 0)
    {
        if (buffer == nullptr || bytes < size_.bytes()) {
            throw std::invalid_argument("vyra: a buffer holds " + std::to_string(buffer == nullptr ? 0 : bytes) +
                                        " bytes, an image has " + std::to_string(size_.bytes()));
        }
        check(functions().VyraSubmitVideoRequest(scanner_.handle(), buffer, context), "ask for an image");
        ++outstanding_;
    }
    // Hands the buffer of an image in again, which ends the image.
    void submit(const image& image) { submit(image.pixels, size_.bytes(), image.context); }
    // Hands in as many buffers as this memory holds, at most eight; their contexts are 0, 1, 2 and so on.
    void submit_all(std::uint8_t* memory, std::size_t bytes)
    {
        const std::size_t count = std::min<std::size_t>(bytes / size_.bytes(), VYRA_MAX_VIDEO_REQUESTS);
        for (std::size_t i = 0; i < std::max<std::size_t>(count, 1); ++i) {
            submit(memory + i * size_.bytes(), bytes - i * size_.bytes(), i);
        }
    }

    // Waits for the next image, at most so long; none when the time was over or stop was given. Nothing is allocated.
    // Throws unplugged when the scanner has gone, error for every other failure (9105, 9110: the computer slept), and
    // std::logic_error when no image can come: no buffer is handed in, or another scanner was opened since.
    std::optional<image> wait(std::chrono::milliseconds timeout, const stop_signal& stop = stop_signal::never())
    {
        using clock = std::chrono::steady_clock;
        constexpr std::chrono::milliseconds longest = std::chrono::hours(24 * 365);  // more overflows the clock
        const clock::time_point end = clock::now() + std::min(timeout, longest);
        while (!stop.requested()) {
            void* filled = nullptr;
            std::uint64_t context = 0;
            const auto status = functions().VyraGetVideoResult(scanner_.handle(), &filled, &context);
            if (status == VYRA_OK) {
                --outstanding_;
                return image{static_cast<std::uint8_t*>(filled), size_, context};
            }
            refuse_endless_wait(status);
            const clock::time_point now = clock::now();
            if (now >= end) {
                break;
            }
            std::this_thread::sleep_for(std::min<clock::duration>(poll_interval_, end - now));
        }
        return std::nullopt;
    }

    // How long wait sleeps between two questions, 5 ms to begin with. At log level 3 each that finds no image is a
    // line.
    void poll_every(std::chrono::milliseconds interval) noexcept { poll_interval_ = interval; }

private:
    const VyraFunctions& functions() const noexcept { return scanner_.functions(); }
    void check(std::int32_t status, const char* action) const { scanner_.check(status, action); }

    void refuse_silenced() const
    {
        if (scanner_.is_silenced()) {
            throw std::logic_error(
                "vyra: \"" + scanner_.name() +
                "\" delivers no images: another scanner was opened since. Close it and open it anew");
        }
    }

    // No image is ready: passes when one may still come.
    void refuse_endless_wait(std::int32_t status) const
    {
        if (scanner_.is_unplugged()) {
            throw unplugged(scanner_.name());
        }
        if (scanner_.ends_ != ends_) {
            throw std::logic_error("vyra: video of \"" + scanner_.name() + "\" ended with its restart: start it anew");
        }
        if (status != VYRA_VIDEO_TIMEOUT) {
            check(status, "fetch an image from");
        }
        refuse_silenced();
        if (outstanding_ == 0) {
            throw std::logic_error("vyra: no image can come: no buffer is handed in");
        }
    }

    vyra::scanner& scanner_;
    const image_size size_;
    const unsigned ends_;
    std::size_t outstanding_ = 0;
    std::chrono::milliseconds poll_interval_{5};
};

}  // namespace vyra

#endif
