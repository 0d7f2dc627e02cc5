#pragma once

#include <string>

#include "foundation/Clock.h"
#include "platform/Displays.h"
#include "platform/SystemInfo.h"

namespace noctra {

/// The kernel's monotonic clock: stands still while the machine sleeps.
class MonotonicClock : public SteadyClock {
public:
    [[nodiscard]] TimePoint now() const override { return std::chrono::steady_clock::now(); }
};

/// The system's time of day in the process's time zone.
class SystemWallClock : public WallClock {
public:
    [[nodiscard]] TimePoint now() const override { return std::chrono::system_clock::now(); }
    [[nodiscard]] std::tm localTime(TimePoint time) const override;
};

/// The distribution's name for itself and the kernel's release.
class LinuxSystemInfo : public SystemInfo {
public:
    /// `displays` must outlive the object.
    explicit LinuxSystemInfo(const Displays& displays);

    [[nodiscard]] std::string systemName() const override { return "Linux"; }
    [[nodiscard]] std::string systemVersion() const override { return version_; }
    [[nodiscard]] std::size_t screenCount() const override { return displays_.screenCount(); }

private:
    const Displays& displays_;
    const std::string version_;
};

/// The file that this process runs; empty when the system does not say.
[[nodiscard]] std::string programPath();

/// The value of PRETTY_NAME in the contents of an os-release file; empty when it has none.
[[nodiscard]] std::string prettyName(const std::string& osRelease);

} // namespace noctra
