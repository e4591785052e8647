// A buffer in which the copy of an image comes to a halt, where threads can be ended in the middle of it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace exit_host {

// On Windows whoever writes to it never returns from that. Elsewhere, where no thread ends before its process does, it
// is an ordinary buffer.
std::uint8_t* halting_buffer(std::size_t size);

// Waits until somebody has written to it.
bool wait_until_halted();

}  // namespace exit_host
