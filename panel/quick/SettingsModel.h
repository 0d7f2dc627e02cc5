#pragma once

#include <memory>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

#include "panel/SettingsPanel.h"

namespace noctra {

/// The settings sheet for its QML file.
class SettingsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString closeTitle READ closeTitle CONSTANT)
    Q_PROPERTY(QString stopTitle READ stopTitle CONSTANT)
    Q_PROPERTY(QString launchAtLoginTitle READ launchAtLoginTitle CONSTANT)
    Q_PROPERTY(QString allowExtremeDimTitle READ allowExtremeDimTitle CONSTANT)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY changed)
    Q_PROPERTY(bool allowExtremeDim READ allowExtremeDim WRITE setAllowExtremeDim NOTIFY changed)
    Q_PROPERTY(QString copyTitle READ copyTitle NOTIFY changed)
    Q_PROPERTY(QColor copyTitleColor READ copyTitleColor NOTIFY changed)
    Q_PROPERTY(QString copySymbol READ copySymbol NOTIFY changed)
    Q_PROPERTY(QColor copySymbolColor READ copySymbolColor NOTIFY changed)

public:
    explicit SettingsModel(std::shared_ptr<SettingsPanel> panel);

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString closeTitle() const;
    [[nodiscard]] QString stopTitle() const;
    [[nodiscard]] QString launchAtLoginTitle() const;
    [[nodiscard]] QString allowExtremeDimTitle() const;
    [[nodiscard]] bool launchAtLogin() const { return shown_.launchAtLogin; }
    [[nodiscard]] bool allowExtremeDim() const { return shown_.allowExtremeDim; }
    [[nodiscard]] QString copyTitle() const;
    [[nodiscard]] QColor copyTitleColor() const;
    [[nodiscard]] QString copySymbol() const;
    [[nodiscard]] QColor copySymbolColor() const;

    void setLaunchAtLogin(bool launch) { panel_->launchAtLogin().isOn.set(launch); }
    void setAllowExtremeDim(bool allow) { panel_->allowExtremeDim().isOn.set(allow); }
    Q_INVOKABLE void close() { panel_->close(); }
    Q_INVOKABLE void copyDiagnostics() { panel_->copyDiagnostics(); }
    Q_INVOKABLE void emergencyStop() { panel_->emergencyStop(); }

    [[nodiscard]] bool shows(const SettingsPanel& panel) const { return panel_.get() == &panel; }
    /// Shows what the panel says now.
    void render();

signals:
    void changed();

private:
    struct Shown {
        bool launchAtLogin = false;
        bool allowExtremeDim = false;
        bool logCopied = false;

        bool operator==(const Shown&) const = default;
    };
    [[nodiscard]] Shown now() const;

    const std::shared_ptr<SettingsPanel> panel_;
    Shown shown_;
};

} // namespace noctra
