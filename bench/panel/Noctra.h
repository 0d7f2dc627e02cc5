#pragma once

#include <string>
#include <vector>

#include "bench/support/Program.h"

namespace noctra::bench {

/// A running Noctra, in the session that the benchmark runs in.
class Noctra {
public:
    struct Memory {
        long resident = 0; ///< KiB, shared pages in full
        long share = 0;    ///< KiB, shared pages by the number of those who share them
        long dirty = 0;    ///< KiB, written to, nobody else's
    };

    /// Starts `binary` and waits until it says that it has been launched. Throws
    /// std::runtime_error when it does not.
    explicit Noctra(const std::string& binary);

    /// Milliseconds from its start until it said so.
    [[nodiscard]] double startTime() const { return startTime_; }
    [[nodiscard]] Memory memory() const;

    /// Hands a line to the one with instruments.
    void tell(const std::string& line) const { program_.type(line); }
    /// Hands it a line and returns the words of the answer, without "bench" in front.
    [[nodiscard]] std::vector<std::string> ask(const std::string& line);

private:
    desktop::Program program_;
    std::size_t answers_ = 0;
    double startTime_ = 0.0;
};

} // namespace noctra::bench
