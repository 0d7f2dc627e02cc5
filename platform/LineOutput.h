#pragma once

#include <string_view>

namespace noctra {

/// Where log lines are echoed.
class LineOutput {
public:
    virtual ~LineOutput() = default;

    /// Writes `line` and a line feed. A failed write is ignored, and a reader that does not read
    /// holds the caller up for a few milliseconds at most. One thread at a time.
    virtual void writeLine(std::string_view line) = 0;
};

} // namespace noctra
