#include "interrupt.h"

#include <atomic>

namespace vyra_tool {
namespace {

std::atomic<bool> interrupt_flag{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may only touch lock-free atomics");

}  // namespace

void request_interrupt() noexcept
{
    interrupt_flag = true;
}

void clear_interrupt() noexcept
{
    interrupt_flag = false;
}

bool interrupted() noexcept
{
    return interrupt_flag;
}

}  // namespace vyra_tool
