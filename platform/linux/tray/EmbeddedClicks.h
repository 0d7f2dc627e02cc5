#pragma once

#include <functional>
#include <utility>

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QWidget>

namespace noctra {

/// Hears the clicks on an item that lies as a window in a tray of the X server. Main thread; needs
/// a QCoreApplication that outlives it.
///
/// QSystemTrayIcon acts as soon as a button goes down. Here a click is a press whose button also
/// comes up on the item.
class EmbeddedClicks : public QObject {
public:
    explicit EmbeddedClicks(std::function<void(Qt::MouseButton)> clicked)
        : clicked_(std::move(clicked)) {
        QCoreApplication::instance()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            return isItem(watched);
        case QEvent::MouseButtonRelease:
            break;
        default:
            return false;
        }
        if (!isItem(watched))
            return false;
        const auto* const release = static_cast<QMouseEvent*>(event);
        if (static_cast<QWidget*>(watched)->rect().contains(release->position().toPoint()))
            clicked_(release->button());
        return true;
    }

private:
    /// Its class is private to Qt.
    static bool isItem(const QObject* object) {
        return object->isWidgetType() && object->inherits("QSystemTrayIconSys");
    }

    const std::function<void(Qt::MouseButton)> clicked_;
};

} // namespace noctra
