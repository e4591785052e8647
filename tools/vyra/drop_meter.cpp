#include "drop_meter.h"

#include <algorithm>

namespace vyra_tool {
namespace {

constexpr std::size_t most_intervals = 1000;  // a capture without end does not grow

}  // namespace

void Drop_meter::frame(Time now)
{
    if (frames_ == 0) {
        first_ = now;
    } else {
        const Seconds interval = now - last_;
        longest_ = std::max(longest_, interval);
        if (recent_.size() < most_intervals) {
            recent_.push_back(interval);
        } else {
            recent_[(frames_ - 1) % most_intervals] = interval;
        }
    }
    last_ = now;
    ++frames_;
    ++since_waited_;
}

void Drop_meter::waiting(Time now)
{
    if (starved_ && interval_.count() > 0) {
        const auto expected = static_cast<std::uint64_t>(Seconds(now - waited_) / interval_);
        if (expected > since_waited_) {
            drops_ += expected - since_waited_;
        }
    } else if (!starved_ && frames_ > 1) {
        interval_ =
            Seconds(last_ - first_) / static_cast<double>(frames_ - 1 + drops_);  // lost images took time as well
    }
    waited_ = now;
    since_waited_ = 0;
    starved_ = false;
}

std::optional<double> Drop_meter::frames_per_second() const
{
    if (frames_ < 2 || last_ <= first_) {
        return std::nullopt;
    }
    return static_cast<double>(frames_ - 1) / Seconds(last_ - first_).count();
}

std::optional<Drop_meter::Seconds> Drop_meter::median_interval() const
{
    if (recent_.empty()) {
        return std::nullopt;
    }
    std::vector<Seconds> sorted = recent_;
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    return *middle;
}

std::optional<Drop_meter::Seconds> Drop_meter::longest_interval() const
{
    return frames_ > 1 ? std::optional(longest_) : std::nullopt;
}

}  // namespace vyra_tool
