#include "bench/support/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace noctra::desktop {

namespace {

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

/// Runs between fork and exec: only calls that are safe there. The child starts with the signal
/// set-up of a shell's child, whatever the test process has blocked or ignored.
void prepareChild(const ChildProcess::Start& start, pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(127);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGHUP})
        ::signal(number, SIG_DFL);

    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(start.standardInput < 0 ? nowhere : start.standardInput, STDIN_FILENO);
    dup2(start.standardOutput < 0 ? nowhere : start.standardOutput, STDOUT_FILENO);
    dup2(start.standardError < 0 ? nowhere : start.standardError, STDERR_FILENO);
    if (start.kept >= 0)
        fcntl(start.kept, F_SETFD, 0);
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const Ending& ending) {
    return stream << (ending.bySignal ? "ended by signal " : "exit status ") << ending.code;
}

ChildProcess::ChildProcess(const Start& start) {
    const std::vector<char*> arguments = pointersTo(start.arguments);
    const std::vector<char*> environment = pointersTo(start.environment);
    std::array<int, 2> failure{};
    if (pipe2(failure.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe can be made");
    const pid_t parent = getpid();
    id_ = fork();
    if (id_ == 0) {
        prepareChild(start, parent);
        execvpe(arguments[0], arguments.data(), environment.data());
        const int reason = errno;
        const ssize_t told = write(failure[1], &reason, sizeof reason);
        _exit(told == sizeof reason ? 127 : 126);
    }
    close(failure[1]);
    int reason = id_ < 0 ? errno : 0;
    if (id_ > 0 && read(failure[0], &reason, sizeof reason) > 0)
        waitForEnding(patience);
    close(failure[0]);
    if (reason != 0)
        throw std::runtime_error("cannot start " + start.arguments[0] + ": " +
                                 std::strerror(reason));
}

ChildProcess::~ChildProcess() {
    constexpr Duration politely{3000};
    signal(SIGCONT);
    signal(SIGTERM);
    if (!waitForEnding(politely)) {
        signal(SIGKILL);
        waitForEnding(patience);
    }
}

void ChildProcess::signal(int number) {
    if (isRunning())
        kill(id_, number);
}

bool ChildProcess::isRunning() {
    if (ending_)
        return false;
    int status = 0;
    const pid_t ended = waitpid(id_, &status, WNOHANG);
    if (ended == id_) {
        const bool bySignal = WIFSIGNALED(status);
        ending_ = Ending{bySignal, bySignal ? WTERMSIG(status) : WEXITSTATUS(status)};
    }
    return !ending_;
}

std::optional<Ending> ChildProcess::waitForEnding(Duration limit) {
    pollUntil(limit, [this] { return !isRunning(); });
    return ending_;
}

} // namespace noctra::desktop
