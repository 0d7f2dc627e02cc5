#pragma once

#include <cstddef>
#include <string>

namespace noctra {

/// What the diagnostics say about the machine. Any thread.
class SystemInfo {
public:
    virtual ~SystemInfo() = default;

    /// The operating system's name: "Linux".
    [[nodiscard]] virtual std::string systemName() const = 0;
    /// Its version in words, without the name.
    [[nodiscard]] virtual std::string systemVersion() const = 0;
    [[nodiscard]] virtual std::size_t screenCount() const = 0;
};

} // namespace noctra
