#include <signal.h>
#include <unistd.h>

#include "interrupt.h"
#include "platform.h"

namespace vyra_tool {
namespace {

extern "C" void note_signal(int)
{
    request_interrupt();
}

}  // namespace

void catch_interrupts()
{
    struct sigaction action = {};
    action.sa_handler = note_signal;  // no SA_RESTART: a question that waits for its answer ends as well
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(number, &action, nullptr);
    }
    // A reader that goes away is noticed as a failed write, which ends the command in order.
    signal(SIGPIPE, SIG_IGN);
}

std::FILE* take_standard_output()
{
    const int copy = dup(STDOUT_FILENO);
    std::FILE* results = copy < 0 ? nullptr : fdopen(copy, "w");
    dup2(STDERR_FILENO, STDOUT_FILENO);
    return results;
}

bool is_terminal(std::FILE* stream)
{
    return isatty(fileno(stream)) != 0;
}

std::vector<std::string> program_arguments(int count, char** values)
{
    return {values + (count > 0 ? 1 : 0), values + count};
}

}  // namespace vyra_tool
