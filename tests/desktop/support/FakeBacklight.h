#pragma once

#include <string>
#include <vector>

#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

/// A folder that stands for /sys/class in a mount namespace of a program's own, with one backlight
/// in it, "test_backlight" (0 to 1000), that shines as bright as it was last told to.
class FakeBacklight {
public:
    explicit FakeBacklight(int value);

    [[nodiscard]] int value() const;
    void set(int value) const;
    /// From now on the hardware stays at `value`, whatever it is told.
    void stickAt(int value) const;

    /// From now on its files are not there, or are there again.
    void setFailing(bool failing) const;
    /// Where brightness is written.
    [[nodiscard]] std::string brightnessFile() const { return file("brightness"); }

    /// Runs the command that is put behind it where this folder is /sys/class.
    [[nodiscard]] std::vector<std::string> launcher() const;

private:
    [[nodiscard]] std::string file(const char* name) const;

    TemporaryFolder folder_;
};

} // namespace noctra::desktop
