#include "bench/compare/Triggers.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace noctra::bench {

StartedProgram::StartedProgram(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const int error =
        posix_spawnp(&process_, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::system_error(error, std::generic_category(), command.front());
}

void StartedProgram::wait() const {
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void StartedProgram::end() const {
    kill(process_, SIGTERM);
    wait();
}

void sendSwitchSignal(const std::string& list) {
    std::istringstream rest(list);
    for (std::string process; std::getline(rest, process, ',');)
        if (kill(std::stoi(process), SIGUSR1) != 0)
            throw std::system_error(errno, std::generic_category(), "process " + process);
}

} // namespace noctra::bench
