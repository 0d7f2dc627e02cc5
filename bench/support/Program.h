#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bench/support/ChildProcess.h"
#include "bench/support/LineReader.h"

namespace noctra::desktop {

/// The address sanitizer holds freed memory of the program's back.
#ifdef NOCTRA_PROGRAM_IS_SANITIZED
inline constexpr bool freedMemoryIsKept = true;
#else
inline constexpr bool freedMemoryIsKept = false;
#endif

/// The program under test, as a person starts it in a terminal.
class Program {
public:
    /// What becomes of its standard output.
    enum class Output {
        read,          ///< collected line by line
        neverRead,     ///< a pipe that nobody empties
        readerGone,    ///< a pipe whose reader has closed its end
        stuckTerminal, ///< a terminal that shows nothing any more, as behind a dead link
    };

    Program(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
            Output output = Output::read);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void signal(int number) { process_->signal(number); }
    [[nodiscard]] bool isRunning() { return process_->isRunning(); }
    std::optional<Ending> waitForEnding(Duration limit = patience);
    /// Kills the program, as no program can prevent, and waits until it is gone.
    void killAtOnce();

    /// Writes a line to its standard input.
    void type(const std::string& line) const;

    /// Waits for a line of standard output that contains `text`.
    bool waitForLine(const std::string& text, Duration limit = patience) const;
    /// Waits until `count` lines of standard output contain `text`.
    bool waitForLines(std::size_t count, const std::string& text, Duration limit = patience) const;
    /// How many lines of standard output contain `text` so far.
    [[nodiscard]] std::size_t countLines(const std::string& text) const;
    /// The lines of the log without their time stamps.
    [[nodiscard]] std::vector<std::string> messages() const;
    [[nodiscard]] std::vector<std::string> outputLines() const { return output_->lines(); }
    [[nodiscard]] std::vector<std::string> errorLines() const { return errors_->lines(); }
    /// Fills the pipe that nobody reads to the last byte.
    void fillOutput() const;
    /// Memory that is the program's at the moment, in KiB.
    [[nodiscard]] long residentKiB() const;
    [[nodiscard]] pid_t id() const { return process_->id(); }

private:
    int input_ = -1;
    int unread_ = -1; ///< both ends of a pipe that nobody reads
    int unreadWriteEnd_ = -1;
    std::unique_ptr<LineReader> output_;
    std::unique_ptr<LineReader> errors_;
    std::unique_ptr<ChildProcess> process_; ///< last: it ends before its readers do
};

} // namespace noctra::desktop
