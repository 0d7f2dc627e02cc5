#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace noctra::bench {

/// A program that was started, without input and output.
class StartedProgram {
public:
    /// `command` is looked up in PATH. Throws std::system_error when it cannot be started.
    explicit StartedProgram(const std::vector<std::string>& command);

    /// Waits for its end.
    void wait() const;
    /// SIGTERM, then as `wait`.
    void end() const;

private:
    pid_t process_ = 0;
};

/// Sends SIGUSR1 to each process that `list` names, separated by commas.
void sendSwitchSignal(const std::string& list);

} // namespace noctra::bench
