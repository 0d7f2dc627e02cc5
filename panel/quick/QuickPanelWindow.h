#pragma once

#include <memory>

#include <QtCore/QObject>

#include "panel/PanelServices.h"
#include "panel/PanelWindow.h"

class QQuickView;

namespace noctra {

class PanelModel;

/// The panel in a window of its own, drawn by Qt Quick without a GPU.
class QuickPanelWindow : public QObject, public PanelWindow {
    Q_OBJECT
public:
    /// Needs a QGuiApplication. `services` outlives the window.
    explicit QuickPanelWindow(const PanelServices& services);
    ~QuickPanelWindow() override;

    void show() override;
    void close() override;
    [[nodiscard]] bool isShown() const override;

protected:
    /// Notes whether the keyboard or the pointer was last used.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    void freeScene();

    const PanelServices& services_;
    std::unique_ptr<PanelModel> model_;
    std::unique_ptr<QQuickView> view_; ///< goes before the model
};

} // namespace noctra
