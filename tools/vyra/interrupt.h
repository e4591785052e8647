// The user's wish to end the program, as one flag that every loop of the tool looks at.
#pragma once

#include <chrono>

namespace vyra_tool {

// How long what has been begun may still take: a closed console leaves a program five seconds in all.
constexpr std::chrono::seconds grace_of_ctrl_c{10};
constexpr std::chrono::seconds grace_of_closed_console{3};

// These may be called from a signal handler and from any thread.
void request_interrupt(std::chrono::seconds grace = grace_of_ctrl_c) noexcept;
void clear_interrupt() noexcept;
bool interrupted() noexcept;
// Whether the interrupt's time for what has been begun is over.
bool grace_is_over() noexcept;
// Whether the user, who asks once more, may have the end at once, in whatever the program hangs.
bool may_end_at_once() noexcept;

// While there is one, nobody ends the program at once.
class Uninterruptible {
public:
    Uninterruptible() noexcept;
    ~Uninterruptible();
    Uninterruptible(const Uninterruptible&) = delete;
    Uninterruptible& operator=(const Uninterruptible&) = delete;
};

}  // namespace vyra_tool
