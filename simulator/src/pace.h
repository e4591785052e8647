// When the automatic images of a capture are due.
#pragma once

#include <algorithm>
#include <chrono>

namespace brenvozulta_simulator {

class Pace {
public:
    using Clock = std::chrono::steady_clock;

    // The first image is due one period from now; at the rate 0 none ever is.
    Pace() = default;
    Pace(double images_a_second, Clock::time_point now) : rate_(images_a_second)
    {
        if (rate_ > 0) {
            const std::chrono::duration<double> period(1 / rate_);  // of the smallest rates none that a clock can tell
            period_ = period < longest_period ? std::chrono::duration_cast<Clock::duration>(period) : longest_period;
            due_ = now + period_;
        }
    }

    double rate() const { return rate_; }
    Clock::time_point due() const { return due_; }

    // An image is delivered now. What is a little late keeps the rate as far as it can; a scanner that was held up for
    // more than two periods, by a slow host or by drawing its first image, makes up for nothing.
    void advance(Clock::time_point now)
    {
        due_ = now - due_ > 2 * period_ ? now + period_ : std::max(due_ + period_, now);
    }

private:
    static constexpr std::chrono::hours longest_period{365 * 24};

    double rate_ = 0;
    Clock::duration period_{};
    Clock::time_point due_;
};

}  // namespace brenvozulta_simulator
