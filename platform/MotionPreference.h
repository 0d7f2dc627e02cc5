#pragma once

namespace noctra {

/// Whether the user has asked the desktop for less movement. Main thread.
class MotionPreference {
public:
    virtual ~MotionPreference() = default;

    /// True where the desktop says that things should not move. It may be asked at any time and
    /// answers at once; a desktop that says nothing counts as one where they may.
    [[nodiscard]] virtual bool reducesMotion() const = 0;
};

} // namespace noctra
