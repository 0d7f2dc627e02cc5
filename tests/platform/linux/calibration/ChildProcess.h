#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace noctra::test {

/// Looks at `condition` every few milliseconds; false when it does not come true in ten seconds.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition);

/// A program that runs as long as the object lives, and no longer than the test's process. Its
/// output goes to a file in the scratch folder.
class ChildProcess {
public:
    /// `prepare` runs in the child before the program starts; the child ends when it gives false.
    explicit ChildProcess(std::vector<std::string> command, bool (*prepare)() = nullptr);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    [[nodiscard]] bool isRunning();

private:
    pid_t pid_;
};

} // namespace noctra::test
