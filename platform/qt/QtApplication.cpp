#include "platform/qt/QtApplication.h"

#include <utility>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>

namespace noctra {

QtApplication::QtApplication() = default;

void QtApplication::becomeAgent() {
    // Without a window a Qt program is in nobody's list; with one it stays when the window closes.
    if (QCoreApplication::instance()->property("quitOnLastWindowClosed").isValid())
        QCoreApplication::instance()->setProperty("quitOnLastWindowClosed", false);
}

void QtApplication::terminate(int status) {
    // Queued: before the event loop runs, an exit would be forgotten.
    QMetaObject::invokeMethod(
        this, [status] { QCoreApplication::exit(status); }, Qt::QueuedConnection);
}

void QtApplication::onWillTerminate(std::function<void()> handler) {
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            [handler = std::move(handler)] { handler(); });
}

} // namespace noctra
