#pragma once

#include <memory>
#include <string_view>

#include "foundation/Color.h"
#include "panel/Binding.h"
#include "panel/PanelServices.h"

namespace noctra {

/// A named switch of the settings panel.
struct ToggleRow {
    std::string_view title;
    Binding<bool> isOn;
};

/// The sheet with what is not on the main panel. It keeps no settings: its switches are the
/// engine's own properties. Main thread.
///
/// Lives as long as the sheet is on the screen; each opening makes a new one.
class SettingsPanel {
public:
    /// How long the confirmation of a copy shows. Each copy ends it once, at its own time, also
    /// where another one came in between.
    static constexpr Seconds confirmationTime{1.5};
    static constexpr std::string_view title = "SETTINGS";
    static constexpr std::string_view closeTitle = "CLOSE";
    static constexpr std::string_view stopTitle = "EMERGENCY STOP (QUIT)";

    /// `changed` is called when the confirmation comes or goes. `services` outlives the panel.
    SettingsPanel(const PanelServices& services, Binding<bool> isShowing,
                  std::function<void()> changed);
    SettingsPanel(const SettingsPanel&) = delete;
    SettingsPanel& operator=(const SettingsPanel&) = delete;

    [[nodiscard]] ToggleRow launchAtLogin() const;
    [[nodiscard]] ToggleRow allowExtremeDim() const;

    [[nodiscard]] bool logCopied() const { return logCopied_; }
    [[nodiscard]] std::string_view copyTitle() const;
    [[nodiscard]] Color copyTitleColor() const;
    [[nodiscard]] Color copySymbolColor() const;
    /// The resource that shows the copy's state.
    [[nodiscard]] std::string_view copySymbol() const;

    void close() const;
    /// Puts the diagnostic log, as it stands, on the clipboard.
    void copyDiagnostics();
    /// Ends the program by way of its ordinary shut-down, which puts every display back.
    void emergencyStop() const;

private:
    void setLogCopied(bool copied);

    const PanelServices& services_;
    ColorFilterManager& manager_;
    const Binding<bool> isShowing_;
    const std::function<void()> changed_;
    bool logCopied_ = false;
    const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

} // namespace noctra
