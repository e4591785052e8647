#include "interrupt.h"

#include <atomic>

namespace vyra_tool {
namespace {

using Clock = std::chrono::steady_clock;

constexpr Clock::rep never = 0;

std::atomic<Clock::rep> grace_end{never};  // never: not interrupted
std::atomic<int> uninterruptible{0};
static_assert(std::atomic<Clock::rep>::is_always_lock_free && std::atomic<int>::is_always_lock_free,
              "a signal handler may only touch lock-free atomics");

}  // namespace

void request_interrupt(std::chrono::seconds grace) noexcept
{
    const Clock::rep end = (Clock::now() + grace).time_since_epoch().count();
    Clock::rep known = grace_end;
    while ((known == never || end < known) && !grace_end.compare_exchange_weak(known, end)) {
    }
}

void clear_interrupt() noexcept
{
    grace_end = never;
}

bool interrupted() noexcept
{
    return grace_end != never;
}

bool grace_is_over() noexcept
{
    return interrupted() && Clock::now().time_since_epoch().count() >= grace_end;
}

bool may_end_at_once() noexcept
{
    return interrupted() && uninterruptible == 0;
}

Uninterruptible::Uninterruptible() noexcept
{
    ++uninterruptible;
}

Uninterruptible::~Uninterruptible()
{
    --uninterruptible;
}

}  // namespace vyra_tool
