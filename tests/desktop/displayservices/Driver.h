#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/GammaTables.h"
#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

/// A process that has the real display-services library open and makes the calls that a test asks
/// for.
class Driver {
public:
    /// No call of the five functions may take longer.
    static constexpr std::chrono::milliseconds callLimit{20};

    struct Surroundings {
        std::map<std::string, std::string> environment;
        std::vector<std::string> launcher; ///< a command that runs what is put behind it
    };
    /// Throws std::runtime_error where it cannot be started.
    explicit Driver(const Surroundings& surroundings);
    ~Driver();
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    /// Nothing: it failed.
    std::optional<float> get(DisplayId display);
    bool set(DisplayId display, float brightness);
    bool setText(DisplayId display, const std::string& brightness); ///< also what is no number
    bool setSmooth(DisplayId display, float brightness);
    bool canChange(DisplayId display);
    bool enableAmbientLight(DisplayId display, bool enable);
    bool finish(std::chrono::milliseconds limit); ///< from two threads at once
    unsigned int takeNews();

    /// Of the calls of the five functions so far.
    [[nodiscard]] std::chrono::nanoseconds longestCall() const { return longestCall_; }
    /// Ends the process, and gives what it has written to its standard output.
    std::string end();
    [[nodiscard]] bool hasMapped(const std::string& library) const;
    /// True while the library's thread waits for nothing but something to do.
    [[nodiscard]] bool isIdle() const;
    void kill();

private:
    std::string ask(const std::string& command);
    std::string askFunction(const std::string& command);

    TemporaryFolder folder_;
    int socket_ = -1;
    std::unique_ptr<ChildProcess> process_;
    bool killed_ = false;
    std::chrono::nanoseconds lastCall_{};
    std::chrono::nanoseconds longestCall_{};
};

} // namespace noctra::desktop
