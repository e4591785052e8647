// The signal for which the acquisition callback waits.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <memory>

namespace kvs::brenvozulta {

// A signal that came while nobody waited is kept and releases one later wait; several of them are one. A release ends
// the waits of before it and is not kept. An event of the system's, and not a condition variable, because a wait must
// not allocate.
class wake_signal {
public:
    // Throws boost::thread_resource_error when the system has no event left.
    wake_signal();

    // Releases one wait.
    void raise() noexcept;

    // Ends every wait that began before, however many there are.
    void release() noexcept;

    // The number of releases so far: what a wait is for ends with the next one.
    std::uint32_t releases() const noexcept { return releases_; }

    // Ends every wait, now and in future.
    void retire() noexcept;

    // Waits, without a limit, for a signal, which it consumes, or until there are more releases than those, or until
    // the signal is retired.
    void wait(std::uint32_t releases) noexcept;

private:
    bool is_over(std::uint32_t releases) const noexcept { return releases_ != releases || retired_; }

    // A wait counts itself before it looks for the signal, and the signal is there before the waits are counted: one of
    // the two sees the other. So the system is only called when somebody waits.
    std::atomic<bool> raised_{false};
    std::atomic<std::uint32_t> releases_{0};
    std::atomic<bool> retired_{false};
    std::atomic<int> waits_{0};
    std::unique_ptr<void, decltype(&CloseHandle)> event_;  // ends one wait, which may find that another was quicker
};

}  // namespace kvs::brenvozulta
