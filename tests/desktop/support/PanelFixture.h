#pragma once

#include "tests/desktop/support/AccessibilityBus.h"
#include "tests/desktop/support/AccessibleTree.h"
#include "tests/desktop/support/DesktopFixture.h"
#include "tests/desktop/support/InputDevices.h"
#include "tests/desktop/support/Screenshot.h"
#include "tests/desktop/support/WindowManagement.h"

namespace noctra::desktop {

/// The controls by what they are called for those who cannot see them.
namespace controls {

inline constexpr const char* gear = "Settings";
inline constexpr const char* warmth = "WARMTH";
inline constexpr const char* brightness = "BRIGHTNESS";
inline constexpr const char* pwmSafe = "PWM-SAFE MODE";
inline constexpr const char* day = "DAY";
inline constexpr const char* evening = "EVENING";
inline constexpr const char* night = "NIGHT";
inline constexpr const char* power = "Noctra filter";
inline constexpr const char* sheet = "SETTINGS";
inline constexpr const char* close = "CLOSE";
inline constexpr const char* launchAtLogin = "LAUNCH AT LOGIN";
inline constexpr const char* allowExtremeDim = "ALLOW EXTREME DIM";
inline constexpr const char* copy = "COPY DIAGNOSTICS";
inline constexpr const char* stop = "EMERGENCY STOP (QUIT)";

} // namespace controls

inline constexpr const char* panelTitle = "NOCTRA";

/// A desktop on which the panel fits the first display, with assistive technology: it tells the
/// tests where the controls are and what they say.
class PanelFixture : public DesktopFixture {
protected:
    static constexpr Box firstDisplay{0, 0, 800, 600};

    void SetUp() override;

    /// Starts the program, shows the panel and waits until it can be worked with.
    [[nodiscard]] std::unique_ptr<Program> startWithPanel();
    void showPanel();
    /// Waits for what a command or the user does to take the panel away.
    [[nodiscard]] bool panelGoes() const;

    /// The control, once it is there. Throws std::runtime_error where it does not come.
    [[nodiscard]] Accessible control(const std::string& name) const;
    [[nodiscard]] bool has(const std::string& name) const;
    /// Waits until the control is there and `condition` holds for it.
    [[nodiscard]] bool becomes(const std::string& name,
                               const std::function<bool(const Accessible&)>& condition) const;
    [[nodiscard]] bool reads(const std::string& name, const std::string& description) const;

    void click(const std::string& name) const;
    /// Puts the pointer where the panel is not.
    void moveAway() const { hands_->moveTo(firstDisplay.at(1, 1)); }
    /// Presses at the lower or upper end of the fader and drags beyond the other one.
    void dragUp(const std::string& fader) const;
    void dragDown(const std::string& fader) const;
    /// Opens the settings and waits until the sheet has come to rest.
    void openSettings() const;
    void closeSettings() const;

    [[nodiscard]] const InputDevices& hands() const { return *hands_; }
    [[nodiscard]] const AccessibleTree& tree() const { return *tree_; }
    [[nodiscard]] const WindowManagement& windows() const { return *windows_; }
    [[nodiscard]] Box panelExtents() const;

private:
    std::unique_ptr<AccessibilityBus> accessibilityBus_;
    std::unique_ptr<AccessibleTree> tree_;
    std::unique_ptr<InputDevices> hands_;
    std::unique_ptr<WindowManagement> windows_;
};

} // namespace noctra::desktop
