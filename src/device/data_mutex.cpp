#include "device/data_mutex.h"

#include "device/short_wait.h"

namespace kvs::brenvozulta {

void data_mutex::wait() noexcept
{
    const auto free = [this] {
        return !held_.load(std::memory_order_relaxed) && !held_.exchange(true, std::memory_order_acquire);
    };
    for (short_wait wait; !free() && wait.again();) {
    }
}

}  // namespace kvs::brenvozulta
