#include <cstdio>
#include <cstdlib>

#include "platform.h"
#include "test_bench/unseen.h"

namespace brenvozulta_simulator {

// No thread can leave a library and take its last reference along, so the library is linked to stay (-z nodelete).
void start_driver_thread(std::function<void()> body)
{
    test_bench::start_detached(std::move(body));
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

void report(const std::string& line)
{
    std::fputs((line + "\n").c_str(), stderr);
}

}  // namespace brenvozulta_simulator
