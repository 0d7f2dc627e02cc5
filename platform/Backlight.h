#pragma once

#include <optional>

namespace noctra {

/// What the system itself says about the level of a panel's backlight. Main thread; one reading is
/// made every two seconds for the life of the process, so it has to be cheap.
class Backlight {
public:
    virtual ~Backlight() = default;

    /// The backlight's level, 0.0 (darkest) to 1.0 (full); nothing when it cannot be read.
    [[nodiscard]] virtual std::optional<float> level() = 0;
};

} // namespace noctra
