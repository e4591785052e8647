// The user's wish to end the program, as one flag that every loop of the tool looks at.
#pragma once

namespace vyra_tool {

// May be called from a signal handler and from any thread.
void request_interrupt() noexcept;
void clear_interrupt() noexcept;
bool interrupted() noexcept;

}  // namespace vyra_tool
