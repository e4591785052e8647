// One function of the double as the control interface sees it.
#pragma once
#include <atomic>
#include <cstdint>
#include <optional>

#include "winerror.h"

namespace win32_double {

// Defined once beside the function, at namespace scope: construction makes the name known to fail() and calls().
// It is never destroyed in effect, so calls at process end are safe.
class Entry_point {
public:
    explicit Entry_point(const char* name);

    // Counts a call. With an error the call has to fail with it.
    std::optional<uint32_t> enter();

    // The same, with the error set as the thread's last error, or as errno.
    bool refused();
    bool refused_by_errno();

    void order_failure(int times, uint32_t error, int after);
    void clear();
    uint64_t calls() const { return calls_.load(std::memory_order_relaxed); }

    const char* const name;
    Entry_point* const next;

private:
    std::atomic<uint64_t> calls_{0};
    std::atomic<bool> armed_{false};
    // Guarded by the orders' lock in entry_point.cpp.
    int times_ = 0;
    int after_ = 0;
    uint32_t error_ = 0;
};

}  // namespace win32_double
