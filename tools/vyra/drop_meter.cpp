#include "drop_meter.h"

namespace vyra_tool {

void Drop_meter::frame(Time now)
{
    if (frames_ == 0) {
        first_ = now;
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

double Drop_meter::frames_per_second() const
{
    return frames_ > 1 && last_ > first_ ? static_cast<double>(frames_ - 1) / Seconds(last_ - first_).count() : 0;
}

}  // namespace vyra_tool
