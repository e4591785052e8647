// Frame rate, intervals and lost images, as far as a host can tell them.
//
// The library drops an image without a word when none of the host's buffers is empty, and a waiting buffer never loses
// one. So images are lost only between two moments at which an empty buffer was waiting, and only when all buffers were
// filled in between. Of the frame intervals that then fit between the two moments, those without a frame count as
// drops.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace vyra_tool {

class Drop_meter {
public:
    using Seconds = std::chrono::duration<double>;
    using Time = std::chrono::steady_clock::time_point;

    // A frame was fetched.
    void frame(Time now);
    // The last fetched frame had filled the last empty buffer.
    void starved() noexcept { starved_ = true; }
    // An empty buffer is waiting.
    void waiting(Time now);

    std::uint64_t frames() const noexcept { return frames_; }
    std::uint64_t drops() const noexcept { return drops_; }
    // Nothing before the second frame.
    std::optional<double> frames_per_second() const;
    // Of the times between two frames that follow each other: the middle one of the last thousand, and the longest of
    // all. Nothing before the second frame.
    std::optional<Seconds> median_interval() const;
    std::optional<Seconds> longest_interval() const;

private:
    Time first_{};
    Time last_{};
    Time waited_{};                // when an empty buffer was last known to wait
    Seconds interval_{};           // between two images, as long as none was lost
    std::vector<Seconds> recent_;  // intervals, the oldest replaced first
    Seconds longest_{};
    std::uint64_t frames_ = 0;
    std::uint64_t drops_ = 0;
    std::uint64_t since_waited_ = 0;  // frames fetched since then
    bool starved_ = false;
};

}  // namespace vyra_tool
