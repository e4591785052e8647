// The signal for which the acquisition callback waits.
#pragma once

#include <windows.h>

#include <atomic>
#include <memory>

namespace kvs::brenvozulta {

// A signal that came while nobody waited is kept and releases one later wait; several of them are one. An event of the
// system's, and not a condition variable, because a wait must not allocate.
class wake_signal {
public:
    // Throws boost::thread_resource_error when the system has no event left.
    wake_signal();

    // Releases one wait.
    void raise() noexcept;

    // Releases every wait, now and in future.
    void retire() noexcept;

    // Waits, without a limit, for a signal, which it consumes, or until the signal is retired.
    void wait() noexcept;

private:
    bool consume() noexcept { return raised_.exchange(false) || retired_; }

    // A wait counts itself before it looks for the signal, and the signal is there before the waits are counted: one of
    // the two sees the other. So the system is only called when somebody waits.
    std::atomic<bool> raised_{false};
    std::atomic<bool> retired_{false};
    std::atomic<int> waits_{0};
    std::unique_ptr<void, decltype(&CloseHandle)> event_;  // ends one wait, which may find that another was quicker
};

}  // namespace kvs::brenvozulta
