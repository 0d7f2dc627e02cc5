#include "platform/linux/LinuxSystem.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

#include <sys/utsname.h>

namespace noctra {

namespace {

std::string contentsOf(const char* path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string describeSystem() {
    std::string name = prettyName(contentsOf("/etc/os-release"));
    if (name.empty())
        name = prettyName(contentsOf("/usr/lib/os-release"));
    utsname kernel{};
    if (::uname(&kernel) != 0)
        return name.empty() ? "(version unknown)" : name;
    return (name.empty() ? "" : name + " ") + "(kernel " + kernel.release + ")";
}

} // namespace

std::string programPath() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

std::string prettyName(const std::string& osRelease) {
    constexpr std::string_view key = "PRETTY_NAME=";
    std::istringstream lines(osRelease);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(key))
            continue;
        std::string value = line.substr(key.size());
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
            value.back() == value.front())
            value = value.substr(1, value.size() - 2);
        return value;
    }
    return {};
}

std::tm SystemWallClock::localTime(TimePoint time) const {
    const std::time_t seconds =
        std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    return parts;
}

LinuxSystemInfo::LinuxSystemInfo(const Displays& displays)
    : displays_(displays), version_(describeSystem()) {}

} // namespace noctra
