#include "turn.h"

std::chrono::nanoseconds thread_time()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}
