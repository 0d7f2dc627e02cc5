#include "app/DebugLogger.h"

#include <array>
#include <chrono>
#include <cstdio>

#include "app/DateDescription.h"
#include "app/Version.h"
#include "foundation/SharedInstance.h"

namespace noctra {

DebugLogger& DebugLogger::shared() {
    return SharedInstance<DebugLogger>::get();
}

DebugLogger::DebugLogger(const WallClock& clock, const SystemInfo& system, LineOutput& output)
    : clock_(clock), system_(system), output_(output) {
    DebugLogger::log("Noctra v" + std::string(programVersion) + " initialized");
    DebugLogger::log(system_.systemName() + " " + system_.systemVersion());
    DebugLogger::log("Screens: " + std::to_string(system_.screenCount()));
}

void DebugLogger::log(std::string_view message) {
    const MutexLock lock(mutex_);
    logs_.push_back("[" + stamp() + "] " + std::string(message));
    if (logs_.size() > maxLogs)
        logs_.pop_front();
    output_.writeLine(logs_.back());
}

std::string DebugLogger::getFullLog() const {
    std::string text = "=== Noctra Debug Log ===\nGenerated: " + describeDate(clock_.now());
    text += "\n" + system_.systemName() + ": " + system_.systemVersion();
    text += "\nScreens: " + std::to_string(system_.screenCount());
    text += "\n===========================\n";
    const MutexLock lock(mutex_);
    for (std::size_t i = 0; i < logs_.size(); ++i) {
        if (i > 0)
            text += '\n';
        text += logs_[i];
    }
    return text;
}

std::string DebugLogger::stamp() const {
    const WallClock::TimePoint now = clock_.now();
    const std::tm local = clock_.localTime(now);
    const auto sinceEpoch =
        std::chrono::floor<std::chrono::milliseconds>(now.time_since_epoch()).count();
    const auto milliseconds = static_cast<int>(((sinceEpoch % 1000) + 1000) % 1000);
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min,
                  local.tm_sec, milliseconds);
    return text.data();
}

} // namespace noctra
