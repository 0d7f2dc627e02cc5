#include "bench/support/Program.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <pty.h>
#include <stdexcept>
#include <unistd.h>

namespace noctra::desktop {

namespace {

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;
};

/// The terminal's own end is for reading, the program's for writing.
Pipe makeTerminal() {
    Pipe ends;
    if (openpty(&ends.readEnd, &ends.writeEnd, nullptr, nullptr, nullptr) != 0)
        throw std::runtime_error("no terminal can be made");
    for (const int end : {ends.readEnd, ends.writeEnd})
        fcntl(end, F_SETFD, FD_CLOEXEC);
    return ends;
}

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe can be made");
    return {ends[0], ends[1]};
}

std::size_t countContaining(const std::vector<std::string>& lines, const std::string& text) {
    return static_cast<std::size_t>(std::ranges::count_if(
        lines, [&](const std::string& line) { return line.find(text) != std::string::npos; }));
}

std::string withoutStamp(const std::string& line) {
    const std::size_t end = line.find("] ");
    return line.starts_with('[') && end != std::string::npos ? line.substr(end + 2) : line;
}

} // namespace

Program::Program(const std::vector<std::string>& arguments,
                 const std::vector<std::string>& environment, Output output) {
    const Pipe forOutput = output == Output::stuckTerminal ? makeTerminal() : makePipe();
    const Pipe forErrors = makePipe();
    const Pipe forInput = makePipe();
    input_ = forInput.writeEnd;
    if (output == Output::read) {
        output_ = std::make_unique<LineReader>(forOutput.readEnd);
    } else if (output == Output::neverRead || output == Output::stuckTerminal) {
        unread_ = forOutput.readEnd;
        unreadWriteEnd_ = fcntl(forOutput.writeEnd, F_DUPFD_CLOEXEC, 0);
    } else {
        close(forOutput.readEnd);
    }
    errors_ = std::make_unique<LineReader>(forErrors.readEnd);
    ChildProcess::Start start;
    start.arguments = arguments;
    start.environment = environment;
    start.standardInput = forInput.readEnd;
    start.standardOutput = forOutput.writeEnd;
    start.standardError = forErrors.writeEnd;
    process_ = std::make_unique<ChildProcess>(start);
    close(forInput.readEnd);
    close(forOutput.writeEnd);
    close(forErrors.writeEnd);
}

Program::~Program() {
    process_.reset();
    for (const int end : {input_, unread_, unreadWriteEnd_})
        if (end >= 0)
            close(end);
}

std::optional<Ending> Program::waitForEnding(Duration limit) {
    const std::optional<Ending> ending = process_->waitForEnding(limit);
    if (ending) {
        errors_->waitForEnd(limit);
        if (output_)
            output_->waitForEnd(limit);
    }
    return ending;
}

void Program::killAtOnce() {
    signal(SIGKILL);
    if (!waitForEnding())
        throw std::runtime_error("a killed program did not go away");
}

void Program::type(const std::string& line) const {
    const std::string bytes = line + "\n";
    if (write(input_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("the program does not read its input");
}

bool Program::waitForLine(const std::string& text, Duration limit) const {
    return waitForLines(1, text, limit);
}

bool Program::waitForLines(std::size_t count, const std::string& text, Duration limit) const {
    return output_->waitUntil(limit, [&](const std::vector<std::string>& lines) {
        return countContaining(lines, text) >= count;
    });
}

std::size_t Program::countLines(const std::string& text) const {
    return countContaining(output_->lines(), text);
}

std::vector<std::string> Program::messages() const {
    std::vector<std::string> lines = output_->lines();
    std::ranges::transform(lines, lines.begin(), withoutStamp);
    return lines;
}

void Program::fillOutput() const {
    // Opened anew: the program shares the flags of the end that it was given.
    const int end = open(("/proc/self/fd/" + std::to_string(unreadWriteEnd_)).c_str(),
                         O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (end < 0)
        throw std::runtime_error("the pipe cannot be filled");
    for (const std::size_t size : {std::size_t{4096}, std::size_t{1}})
        while (write(end, std::string(size, '.').data(), size) > 0) {
        }
    close(end);
}

long Program::residentKiB() const {
    std::ifstream status("/proc/" + std::to_string(process_->id()) + "/status");
    for (std::string word; status >> word;) {
        long amount = 0;
        if (word == "VmRSS:" && status >> amount)
            return amount;
    }
    throw std::runtime_error("the program's memory cannot be read");
}

} // namespace noctra::desktop
