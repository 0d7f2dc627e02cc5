#include "tests/platform/linux/calibration/ChildProcess.h"

#include <chrono>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/platform/linux/calibration/ScratchFolder.h"

namespace noctra::test {

bool waitUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        ::poll(nullptr, 0, 5);
    }
    return true;
}

ChildProcess::ChildProcess(std::vector<std::string> command, bool (*prepare)()) {
    const std::string output = scratchFolder() / "children.log";
    std::vector<char*> arguments;
    for (std::string& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);

    pid_ = ::fork();
    if (pid_ != 0)
        return;
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int log = ::open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(log, STDOUT_FILENO);
    ::dup2(log, STDERR_FILENO);
    if (prepare == nullptr || prepare())
        ::execvp(arguments[0], arguments.data());
    ::_exit(127);
}

ChildProcess::~ChildProcess() {
    if (!isRunning())
        return;
    ::kill(pid_, SIGTERM);
    if (!waitUntil([this] { return !isRunning(); })) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
}

bool ChildProcess::isRunning() {
    if (pid_ > 0 && ::waitpid(pid_, nullptr, WNOHANG) != 0)
        pid_ = -1;
    return pid_ > 0;
}

} // namespace noctra::test
