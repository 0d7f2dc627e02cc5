#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "foundation/MainQueue.h"
#include "foundation/Observable.h"
#include "panel/AnimationTransaction.h"
#include "panel/FaderReadout.h"
#include "panel/NoctraSwitch.h"
#include "panel/PanelServices.h"
#include "panel/PresetButton.h"
#include "panel/SettingsPanel.h"
#include "panel/StudioFader.h"
#include "pwmsafe/PwmSafeStatusRow.h"

namespace noctra {

/// A stored pair of warmth and brightness.
struct Preset {
    std::string_view label;
    double intensity;
    double brightness;
};

/// The control panel: what it shows follows from the engine and the controller on every render,
/// what is done to it goes through their properties. Main thread.
class FilterControlView {
public:
    static constexpr double width = 320.0;  ///< points
    static constexpr double height = 540.0; ///< points
    static constexpr std::string_view title = "NOCTRA";
    static constexpr std::string_view warmthLabel = "WARMTH";
    static constexpr std::string_view brightnessLabel = "BRIGHTNESS";
    /// What the controls without a text of their own are called by those who cannot see them.
    static constexpr std::string_view settingsName = "Settings";
    static constexpr std::string_view powerName = "Noctra filter";
    static constexpr SpringSpec settingsSpring{.response = 0.35, .dampingFraction = 0.8};
    /// The presets in the order of their buttons; warmth by the temperature that it reads as.
    static constexpr std::array<Preset, 3> presets{{
        {"DAY", 1.0 - 4000.0 / 6500.0, 1.0},
        {"EVENING", 1.0 - 2700.0 / 6500.0, 0.85},
        {"NIGHT", 1.0, 0.7},
    }};

    /// `render` is called on the main queue, once for any number of changes, when what is shown
    /// may have changed. `services` outlives the view.
    FilterControlView(const PanelServices& services, std::function<void()> render);
    FilterControlView(const FilterControlView&) = delete;
    FilterControlView& operator=(const FilterControlView&) = delete;
    ~FilterControlView();

    [[nodiscard]] StudioFader warmthFader();
    [[nodiscard]] StudioFader brightnessFader();
    [[nodiscard]] FaderReadout warmthReadout() const;
    [[nodiscard]] FaderReadout brightnessReadout() const;
    [[nodiscard]] PresetButton presetButton(std::size_t index);
    [[nodiscard]] NoctraSwitch powerSwitch() const;
    [[nodiscard]] PwmSafeStatusRow& statusRow() { return statusRow_; }

    /// The settings sheet while it is, or glides, over the panel.
    [[nodiscard]] std::shared_ptr<SettingsPanel> settings() { return settings_; }
    [[nodiscard]] bool showingSettings() const { return showingSettings_; }
    /// What the gear button does.
    void toggleSettings() { setShowingSettings(!showingSettings_); }
    /// The sheet has left the screen.
    void settingsLeft();

    /// How what changes next is to move: for the actions of buttons, and taken by the render.
    AnimationTransaction transaction;

private:
    [[nodiscard]] std::string kelvinText() const;
    [[nodiscard]] std::string percentText() const;
    [[nodiscard]] bool isActive(const Preset& preset) const;
    void apply(const Preset& preset);
    void setShowingSettings(bool showing);
    void scheduleRender();

    const PanelServices services_;
    ColorFilterManager& filterManager_;
    bool showingSettings_ = false;
    bool isWarmthDragging_ = false;

    WorkItem render_;
    AnyCancellable filterChanges_;
    AnyCancellable pwmSafeChanges_;
    PwmSafeStatusRow statusRow_;
    std::shared_ptr<SettingsPanel> settings_;
    const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

} // namespace noctra
