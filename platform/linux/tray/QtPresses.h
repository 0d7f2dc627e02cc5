#pragma once

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>

namespace noctra {

/// Knows when one of Qt's windows was last told of a press of a mouse button. Main thread; needs a
/// QCoreApplication that outlives it.
class QtPresses : public QObject {
public:
    QtPresses() { QCoreApplication::instance()->installEventFilter(this); }

    /// In ms, by the window system's clock; 0 before the first.
    [[nodiscard]] std::uint32_t time() const { return time_; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonPress ||
            event->type() == QEvent::MouseButtonDblClick)
            time_ = static_cast<std::uint32_t>(static_cast<QMouseEvent*>(event)->timestamp());
        return false;
    }

private:
    std::uint32_t time_ = 0;
};

} // namespace noctra
