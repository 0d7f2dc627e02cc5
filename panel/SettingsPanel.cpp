#include "panel/SettingsPanel.h"

#include <utility>

#include "engine/ColorFilterManager.h"
#include "platform/Application.h"
#include "platform/Clipboard.h"

namespace noctra {

SettingsPanel::SettingsPanel(const PanelServices& services, Binding<bool> isShowing,
                             std::function<void()> changed)
    : services_(services), manager_(services.filterManager), isShowing_(std::move(isShowing)),
      changed_(std::move(changed)) {}

ToggleRow SettingsPanel::launchAtLogin() const {
    return {"LAUNCH AT LOGIN", bindingTo(manager_.startAtLogin)};
}

ToggleRow SettingsPanel::allowExtremeDim() const {
    return {"ALLOW EXTREME DIM", bindingTo(manager_.allowExtremeDim)};
}

std::string_view SettingsPanel::copyTitle() const {
    return logCopied_ ? "COPIED DIAGNOSTICS" : "COPY DIAGNOSTICS";
}

Color SettingsPanel::copyTitleColor() const {
    return logCopied_ ? colors::systemGreen : colors::white;
}

Color SettingsPanel::copySymbolColor() const {
    return logCopied_ ? colors::systemGreen : colors::systemGrey;
}

std::string_view SettingsPanel::copySymbol() const {
    return logCopied_ ? "check" : "clipboard";
}

void SettingsPanel::close() const {
    isShowing_.set(false);
}

void SettingsPanel::copyDiagnostics() {
    services_.clipboard.clearContents();
    services_.clipboard.setString(services_.fullLog());
    services_.log.log("Debug log copied to clipboard");
    setLogCopied(true);
    services_.mainQueue.asyncAfter(confirmationTime, [this, alive = std::weak_ptr(alive_)] {
        if (!alive.expired())
            setLogCopied(false);
    });
}

void SettingsPanel::setLogCopied(bool copied) {
    logCopied_ = copied;
    changed_();
}

void SettingsPanel::emergencyStop() const {
    services_.application.terminate(0);
}

} // namespace noctra
