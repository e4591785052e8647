#include <cstdlib>
#include <thread>

#include "platform.h"

namespace brenvozulta_simulator {

// No thread can leave a library and take its last reference along, so the library is linked to stay (-z nodelete).
void start_driver_thread(std::function<void()> body)
{
    std::thread(std::move(body)).detach();
}

// Threads run on until the process is gone.
bool other_threads_are_gone()
{
    return false;
}

std::string environment_text(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace brenvozulta_simulator
