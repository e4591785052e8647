#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

#include "interrupt.h"
#include "platform.h"

namespace vyra_tool {
namespace {

constexpr char ended_at_once[] = "vyra: ended at once: what was under way is unfinished\n";

extern "C" void wake_up(int) {}

constexpr int wake_up_signal = SIGUSR1;  // for the first thread
constexpr int end_signal = SIGUSR2;      // for the listening thread

sigset_t listened_signals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, end_signal}) {
        sigaddset(&signals, number);
    }
    return signals;
}

}  // namespace

// The signals wait for a thread of their own, as on Windows. A handler would run on any thread, one that is just
// starting included, where the thread sanitizer loses it.
Interrupt_listener::Interrupt_listener()
{
    const sigset_t signals = listened_signals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // here and in all threads to come
    struct sigaction action = {};
    action.sa_handler = wake_up;  // no SA_RESTART: a question that waits for its answer ends as well
    sigaction(wake_up_signal, &action, nullptr);
    // A reader that goes away, and a file that may not grow, are noticed as failed writes, which end the command in
    // order.
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
    thread_ = std::thread([signals, first = pthread_self()] {
        int number = 0;
        while (sigwait(&signals, &number) == 0 && number != end_signal) {
            if (number == SIGINT && may_end_at_once()) {
                const auto ignored = ::write(STDERR_FILENO, ended_at_once, sizeof ended_at_once - 1);
                static_cast<void>(ignored);  // not through stderr, whose lock may be what the program hangs in
                _exit(1);
            }
            request_interrupt(number == SIGHUP ? grace_of_closed_console : grace_of_ctrl_c);
            pthread_kill(first, wake_up_signal);
        }
    });
}

Interrupt_listener::~Interrupt_listener()
{
    pthread_kill(thread_.native_handle(), end_signal);
    thread_.join();
}

std::FILE* take_standard_output()
{
    const int copy = dup(STDOUT_FILENO);
    std::FILE* results = copy < 0 ? nullptr : fdopen(copy, "w");
    dup2(STDERR_FILENO, STDOUT_FILENO);
    return results;
}

// A terminal shows what its user has chosen.
unsigned exchange_console_code_page(unsigned)
{
    return 0;
}

bool is_terminal(std::FILE* stream)
{
    return isatty(fileno(stream)) != 0;
}

std::string read_input_line()
{
    std::string line;
    char character = 0;
    while (read(STDIN_FILENO, &character, 1) == 1 && character != '\n') {
        line += character;
    }
    return line;
}

// Where the system has no such folder, the variable says which one stands for it.
std::string program_data_folder()
{
    const char* value = std::getenv("ProgramData");
    return value == nullptr ? "" : value;
}

std::vector<std::string> program_arguments(int count, char** values)
{
    return {values + (count > 0 ? 1 : 0), values + count};
}

}  // namespace vyra_tool
