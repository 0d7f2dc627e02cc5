#pragma once

#include <string>

#include "platform/LineOutput.h"

namespace noctra {

/// Lines to a file descriptor, by default the process's standard output.
///
/// A reader that has stopped reading (a full pipe, a terminal that was halted) holds a line up for
/// 20 ms, once; from then on lines are dropped until it reads again.
class StandardOutput : public LineOutput {
public:
    explicit StandardOutput(int descriptor = 1) : descriptor_(descriptor) {}

    void writeLine(std::string_view line) override;

private:
    const int descriptor_;
    std::string buffer_;
    bool stalled_ = false;
};

} // namespace noctra
