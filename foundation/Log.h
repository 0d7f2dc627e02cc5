#pragma once

#include <string_view>

namespace noctra {

/// Where every part of the program leaves its diagnostic lines.
///
/// Any thread. Never fails and never blocks for long: the thread that answers SIGTERM logs first.
class Log {
public:
    virtual ~Log() = default;
    /// Stores one entry; `message` is kept unchanged (a line feed in it does not split it).
    virtual void log(std::string_view message) = 0;
};

} // namespace noctra
