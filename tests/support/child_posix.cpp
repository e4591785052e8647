#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>

#include "support/child_system.h"

extern char** environ;

namespace test_support {
namespace {

struct Pipe {
    int ends[2] = {-1, -1};

    Pipe()
    {
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe can be made");
        }
    }
};

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> all;
    for (std::string& text : texts) {
        all.push_back(text.data());
    }
    all.push_back(nullptr);
    return all;
}

std::vector<std::string> with_parents(const Environment& environment)
{
    std::vector<std::string> all;
    for (const auto& [name, value] : environment) {
        all.push_back(name + "=" + value);
    }
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (environment.count(text.substr(0, text.find('='))) == 0) {
            all.push_back(text);
        }
    }
    return all;
}

}  // namespace

std::string program_folder()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

Spawned spawn(const std::vector<std::string>& command, const Environment& environment, const std::string& input)
{
    std::vector<std::string> words = command;
    std::vector<std::string> variables = with_parents(environment);
    const Pipe in;
    const Pipe out;
    const Pipe err;
    // What fits into the pipe needs no reader yet; a child that ended early would leave none.
    const bool fed = write(in.ends[1], input.data(), input.size()) == static_cast<ssize_t>(input.size());
    close(in.ends[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in.ends[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.ends[1], STDERR_FILENO);
    pid_t process = 0;
    const int failure =
        posix_spawn(&process, words[0].c_str(), &actions, nullptr, pointers(words).data(), pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    for (const int end : {in.ends[0], out.ends[1], err.ends[1]}) {
        close(end);
    }
    if (failure != 0 || !fed) {
        throw std::runtime_error("cannot start " + words[0]);
    }
    return {process, out.ends[0], err.ends[0]};
}

std::size_t read_some(System_handle pipe, char* buffer, std::size_t size)
{
    ssize_t count = -1;
    do {
        count = read(static_cast<int>(pipe), buffer, size);
    } while (count < 0 && errno == EINTR);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void close_pipe(System_handle pipe)
{
    close(static_cast<int>(pipe));
}

void interrupt(System_handle process)
{
    kill(static_cast<pid_t>(process), SIGINT);
}

void close_console(System_handle process)
{
    kill(static_cast<pid_t>(process), SIGHUP);
}

void end_by_force(System_handle process)
{
    kill(static_cast<pid_t>(process), SIGKILL);
}

int wait_for_exit(System_handle process)
{
    int status = 0;
    while (waitpid(static_cast<pid_t>(process), &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace test_support
