#include "tests/desktop/displayservices/Driver.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

namespace noctra::desktop {

namespace {

std::string exactly(float value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.9g", static_cast<double>(value));
    return text.data();
}

std::vector<std::string> inEnvironment(std::map<std::string, std::string> variables) {
    for (const char* name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"})
        if (const char* value = std::getenv(name); value != nullptr)
            variables[name] = value;
    std::vector<std::string> environment;
    environment.reserve(variables.size());
    for (const auto& [name, value] : variables)
        environment.emplace_back(name).append("=").append(value);
    return environment;
}

} // namespace

Driver::Driver(const Surroundings& surroundings) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw std::runtime_error("no socket can be made");
    socket_ = ends[0];
    const timeval limit{patience.count() / 1000, 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    const int output = ::open((folder_ / "stdout").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ChildProcess::Start start;
    start.arguments = surroundings.launcher;
    for (const std::string& own :
         {std::string(NOCTRA_DRIVER), std::to_string(ends[1]), std::string(NOCTRA_LIBRARY)})
        start.arguments.push_back(own);
    start.environment = inEnvironment(surroundings.environment);
    start.standardOutput = output;
    start.standardError = STDERR_FILENO;
    start.kept = ends[1];
    process_ = std::make_unique<ChildProcess>(start);
    ::close(output);
    ::close(ends[1]);
}

Driver::~Driver() {
    end();
}

std::string Driver::end() {
    if (socket_ >= 0) {
        ::close(std::exchange(socket_, -1));
        // Its end is clean also while the library's thread still works.
        const Ending expected = killed_ ? Ending{true, SIGKILL} : exited(0);
        EXPECT_EQ(process_->waitForEnding(patience), expected);
    }
    return readFile(folder_ / "stdout");
}

std::string Driver::ask(const std::string& command) {
    ::send(socket_, command.data(), command.size(), MSG_NOSIGNAL);
    std::string answer(256, '\0');
    const ssize_t length = ::recv(socket_, answer.data(), answer.size(), 0);
    if (length <= 0)
        throw std::runtime_error("the driver gives no answer to: " + command);
    std::istringstream words(answer.substr(0, static_cast<std::size_t>(length)));
    std::string result;
    std::int64_t nanoseconds = 0;
    words >> result >> nanoseconds;
    lastCall_ = std::chrono::nanoseconds(nanoseconds);
    return result;
}

std::string Driver::askFunction(const std::string& command) {
    std::string result = ask(command);
    longestCall_ = std::max(longestCall_, lastCall_);
    return result;
}

std::optional<float> Driver::get(DisplayId display) {
    const std::string result = askFunction("get " + std::to_string(display));
    return result == "failed" ? std::nullopt : std::optional(std::strtof(result.c_str(), nullptr));
}

bool Driver::set(DisplayId display, float brightness) {
    return setText(display, exactly(brightness));
}

bool Driver::setText(DisplayId display, const std::string& brightness) {
    return askFunction("set " + std::to_string(display) + " " + brightness) == "ok";
}

bool Driver::setSmooth(DisplayId display, float brightness) {
    return askFunction("smooth " + std::to_string(display) + " " + exactly(brightness)) == "ok";
}

bool Driver::canChange(DisplayId display) {
    return askFunction("can " + std::to_string(display)) == "true";
}

bool Driver::enableAmbientLight(DisplayId display, bool enable) {
    return askFunction("alc " + std::to_string(display) + (enable ? " 1" : " 0")) == "ok";
}

bool Driver::finish(std::chrono::milliseconds limit) {
    return ask("finish " + std::to_string(limit.count())) == "1";
}

unsigned int Driver::takeNews() {
    return static_cast<unsigned int>(std::stoul(ask("news")));
}

bool Driver::hasMapped(const std::string& library) const {
    return readFile("/proc/" + std::to_string(process_->id()) + "/maps").find(library) !=
           std::string::npos;
}

bool Driver::isIdle() const {
    const auto tasks = "/proc/" + std::to_string(process_->id()) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(tasks)) {
        if (readFile(task.path() / "comm") != "noctra-displays\n")
            continue;
        // The call's number and arguments; the third is the limit of a poll or ppoll.
        std::istringstream call(readFile(task.path() / "syscall"));
        std::string number;
        std::string descriptors;
        std::string count;
        std::string limit;
        call >> number >> descriptors >> count >> limit;
        return (number == "7" && limit == "0xffffffff") || (number == "73" && limit == "0x0");
    }
    return false;
}

void Driver::kill() {
    process_->signal(SIGKILL);
    process_->waitForEnding(patience);
    killed_ = true;
}

} // namespace noctra::desktop
