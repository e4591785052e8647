#include "stale_handles.h"

#include <atomic>

#include "win32_double/control.h"

namespace win32_double {
namespace {

std::atomic<uint64_t> count{0};

}  // namespace

void note_stale_handle()
{
    count.fetch_add(1, std::memory_order_relaxed);
}

uint64_t stale_handles()
{
    return count.load(std::memory_order_relaxed);
}

}  // namespace win32_double
