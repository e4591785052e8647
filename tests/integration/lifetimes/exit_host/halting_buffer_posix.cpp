#include <vector>

#include "brenvozulta_simulator/control.h"
#include "halting_buffer.h"

namespace exit_host {

std::uint8_t* halting_buffer(std::size_t size)
{
    static auto* const buffer = new std::vector<std::uint8_t>(size);
    return buffer->data();
}

bool wait_until_halted()
{
    return brenvozulta_sim_wait_callbacks_entered(1, 20'000) != 0;
}

}  // namespace exit_host
