#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <sys/types.h>
#include <vector>

#include "bench/support/Waiting.h"

namespace noctra::desktop {

/// How a process ended.
struct Ending {
    bool bySignal = false;
    int code = 0; ///< the exit status, or the signal's number

    friend bool operator==(const Ending&, const Ending&) = default;
};
inline Ending exited(int status) {
    return {false, status};
}
std::ostream& operator<<(std::ostream& stream, const Ending& ending);

/// A process started by a test. It never outlives the test: its owner ends it, and the kernel does
/// where the test itself is killed. Start children from the main thread only.
class ChildProcess {
public:
    struct Start {
        std::vector<std::string> arguments;   ///< the first is the program, looked up in PATH
        std::vector<std::string> environment; ///< NAME=value, all that the process gets
        int standardInput = -1;               ///< -1: nowhere
        int standardOutput = -1;              ///< -1: nowhere
        int standardError = -1;               ///< -1: nowhere
        int kept = -1;                        ///< one more descriptor, under its own number
    };

    /// Throws std::runtime_error where the program cannot be started.
    explicit ChildProcess(const Start& start);
    /// Asks the process to end, then kills it.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t id() const { return id_; }
    /// Sends a signal; nothing happens when the process has ended.
    void signal(int number);
    [[nodiscard]] bool isRunning();
    /// Nothing when the process still runs after `limit`.
    std::optional<Ending> waitForEnding(Duration limit);

private:
    pid_t id_ = -1;
    std::optional<Ending> ending_;
};

} // namespace noctra::desktop
