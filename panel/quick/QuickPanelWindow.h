#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <QtCore/QObject>

#include "panel/PanelServices.h"
#include "panel/PanelWindow.h"
#include "panel/quick/PanelModel.h"

class QQuickView;

namespace noctra {

/// The panel in a window of its own, drawn by Qt Quick without a GPU.
class QuickPanelWindow : public QObject, public PanelWindow {
    Q_OBJECT
public:
    /// Needs a QGuiApplication. `services` outlives the window.
    explicit QuickPanelWindow(const PanelServices& services);
    ~QuickPanelWindow() override;

    void show(const PanelPlace& place) override;
    void close() override;
    [[nodiscard]] bool isShown() const override;
    [[nodiscard]] std::uintptr_t window() const override;
    void onCloseAsked(std::function<void()> asked) override { closeAsked_ = std::move(asked); }

protected:
    /// Notes what was last used: the keyboard, the mouse or fingers. Keeps requests to close.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    void freeScene();
    void askToClose() const;

    const PanelServices& services_;
    std::function<void()> closeAsked_;
    PanelState state_;
    std::unique_ptr<PanelModel> model_;
    std::unique_ptr<QQuickView> view_; ///< goes before the model
};

} // namespace noctra
