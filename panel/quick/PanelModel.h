#pragma once

#include <memory>
#include <vector>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

#include "panel/FilterControlView.h"
#include "panel/PanelWindow.h"
#include "panel/PopoverRootView.h"
#include "panel/quick/ButtonStyleValue.h"
#include "panel/quick/FaderModel.h"
#include "panel/quick/PanelFonts.h"
#include "panel/quick/PresetModel.h"
#include "panel/quick/ReadoutValue.h"
#include "panel/quick/SettingsModel.h"
#include "panel/quick/SpringFollower.h"
#include "panel/quick/StatusRowModel.h"

namespace noctra {

/// What stays of a panel from one window to the next.
struct PanelState {
    bool showingSettings = false;
    double scrolled = 0.0; ///< points, from its top
};

/// The control panel for its QML files: what a FilterControlView says, property by property, each
/// with a signal when it has changed. Main thread.
class PanelModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString settingsName READ settingsName CONSTANT)
    Q_PROPERTY(QString powerName READ powerName CONSTANT)
    Q_PROPERTY(QColor bgDeep READ bgDeep CONSTANT)
    Q_PROPERTY(QColor panelGrey READ panelGrey CONSTANT)
    Q_PROPERTY(QColor redSignal READ redSignal CONSTANT)
    Q_PROPERTY(QColor systemRed READ systemRed CONSTANT)
    Q_PROPERTY(noctra::PanelFonts* fonts READ fonts CONSTANT)
    /// Nothing is to glide, spring or fade.
    Q_PROPERTY(bool reducesMotion READ reducesMotion CONSTANT)
    /// The keyboard was last used to get about: show where its focus is.
    Q_PROPERTY(bool showsFocus READ showsFocus NOTIFY showsFocusChanged)
    /// Fingers, not a mouse, were last used to point.
    Q_PROPERTY(bool isTouched READ isTouched NOTIFY isTouchedChanged)
    Q_PROPERTY(QSizeF panelSize READ panelSize CONSTANT)
    /// Device pixels.
    Q_PROPERTY(int edgeWidth READ edgeWidth CONSTANT)

    Q_PROPERTY(QString warmthLabel READ warmthLabel CONSTANT)
    Q_PROPERTY(QString brightnessLabel READ brightnessLabel CONSTANT)
    Q_PROPERTY(noctra::FaderModel* warmth READ warmth CONSTANT)
    Q_PROPERTY(noctra::FaderModel* brightness READ brightness CONSTANT)
    Q_PROPERTY(noctra::ReadoutValue warmthReadout READ warmthReadout NOTIFY warmthReadoutChanged)
    Q_PROPERTY(noctra::ReadoutValue brightnessReadout READ brightnessReadout NOTIFY
                   brightnessReadoutChanged)
    Q_PROPERTY(noctra::StatusRowModel* statusRow READ statusRow CONSTANT)
    Q_PROPERTY(QList<noctra::PresetModel*> presets READ presets CONSTANT)
    Q_PROPERTY(bool isOn READ isOn NOTIFY isOnChanged)
    Q_PROPERTY(noctra::ButtonStyleValue powerStyle READ powerStyle NOTIFY powerStyleChanged)
    /// The path of the switch's icon, looked up at every render; empty where there is none.
    Q_PROPERTY(QString powerIcon READ powerIcon NOTIFY powerIconChanged)

    Q_PROPERTY(bool showingSettings READ showingSettings NOTIFY showingSettingsChanged)
    /// The sheet while it is on the screen, also while it leaves; else null.
    Q_PROPERTY(noctra::SettingsModel* settings READ settings NOTIFY settingsChanged)
    /// How far up the sheet is: 0 below the panel, 1 over it; beyond 1 while it swings.
    Q_PROPERTY(qreal sheetLevel READ sheetLevel NOTIFY sheetLevelChanged)

    /// How far down it is scrolled, in points.
    Q_PROPERTY(qreal scrolled READ scrolledBy WRITE setScrolledBy)

public:
    /// Begins as `state` says, and leaves there how it ends. Both outlive the model.
    PanelModel(const PanelServices& services, PanelState& state);
    ~PanelModel() override;

    [[nodiscard]] static QString title() { return toQt(FilterControlView::title); }
    [[nodiscard]] static QString settingsName() { return toQt(FilterControlView::settingsName); }
    [[nodiscard]] static QString powerName() { return toQt(FilterControlView::powerName); }
    [[nodiscard]] static QString warmthLabel() { return toQt(FilterControlView::warmthLabel); }
    [[nodiscard]] static QString brightnessLabel() {
        return toQt(FilterControlView::brightnessLabel);
    }
    [[nodiscard]] static QColor bgDeep();
    [[nodiscard]] static QColor panelGrey();
    [[nodiscard]] static QColor redSignal();
    [[nodiscard]] static QColor systemRed();
    [[nodiscard]] PanelFonts* fonts() { return &fonts_; }
    [[nodiscard]] bool reducesMotion() const { return reducesMotion_; }
    [[nodiscard]] bool showsFocus() const { return showsFocus_; }
    void setShowsFocus(bool shows);
    [[nodiscard]] bool isTouched() const { return isTouched_; }
    void setTouched(bool touched);
    [[nodiscard]] static QSizeF panelSize() {
        return {PopoverRootView::panelSize.width, PopoverRootView::panelSize.height};
    }

    [[nodiscard]] static int edgeWidth() { return PanelEdge::width; }

    [[nodiscard]] FaderModel* warmth() { return &warmth_; }
    [[nodiscard]] FaderModel* brightness() { return &brightness_; }
    [[nodiscard]] ReadoutValue warmthReadout() const { return warmthReadout_; }
    [[nodiscard]] ReadoutValue brightnessReadout() const { return brightnessReadout_; }
    [[nodiscard]] StatusRowModel* statusRow() { return &statusRow_; }
    [[nodiscard]] QList<PresetModel*> presets() const;
    [[nodiscard]] bool isOn() const { return isOn_; }
    [[nodiscard]] ButtonStyleValue powerStyle() const;
    [[nodiscard]] QString powerIcon() const { return powerIcon_; }
    [[nodiscard]] bool showingSettings() const { return showingSettings_; }
    [[nodiscard]] SettingsModel* settings() { return settings_.get(); }
    [[nodiscard]] qreal sheetLevel() const { return sheet_.value(); }
    [[nodiscard]] qreal scrolledBy() const { return state_.scrolled; }
    void setScrolledBy(qreal points) { state_.scrolled = points; }

    Q_INVOKABLE void pressPower() { view_.powerSwitch().press(view_.transaction); }
    Q_INVOKABLE void pressGear() { view_.toggleSettings(); }
    /// Escape: closes the sheet; where it is not shown, asks for the panel to be closed.
    Q_INVOKABLE void escape();
    Q_INVOKABLE static bool showsIndicators(double availableHeight) {
        return PopoverRootView::showsIndicators(availableHeight);
    }
    Q_INVOKABLE static int edgesAcross(double scale) { return PanelEdge::across(scale); }
    /// The wheel was turned over what does not take it for itself.
    Q_INVOKABLE void turnWheel(double points, double units) {
        emit scrolled(PopoverRootView::wheelDistance(points, units));
    }
    /// The path of an icon of the program; empty where it does not have it.
    Q_INVOKABLE QString icon(const QString& name) const;

signals:
    void showsFocusChanged();
    void isTouchedChanged();
    void scrolled(double distance);
    void warmthReadoutChanged();
    void brightnessReadoutChanged();
    void isOnChanged();
    void powerStyleChanged();
    void powerIconChanged();
    void showingSettingsChanged();
    void settingsChanged();
    void sheetLevelChanged();
    void closeRequested();

private:
    void render();
    void renderReadouts();
    void renderPower();
    void renderSettings();
    [[nodiscard]] std::optional<SpringSpec> unlessReduced(std::optional<SpringSpec> spring) const;

    const PanelServices services_;
    PanelState& state_;
    const bool reducesMotion_;
    bool showsFocus_ = false;
    bool isTouched_ = false;
    FilterControlView view_;
    PanelFonts fonts_;
    FaderModel warmth_;
    FaderModel brightness_;
    ReadoutValue warmthReadout_;
    ReadoutValue brightnessReadout_;
    StatusRowModel statusRow_;
    std::vector<std::unique_ptr<PresetModel>> presets_;
    bool isOn_;
    QString powerIcon_;
    SpringFollower power_;
    bool showingSettings_ = false;
    std::unique_ptr<SettingsModel> settings_;
    SpringFollower sheet_;
};

} // namespace noctra
