#include "platform/qt/QtApplication.h"

#include <utility>

#include <QtGui/QGuiApplication>
#include <QtGui/QSessionManager>
#include <QtGui/QWindow>

namespace noctra {

QtApplication::QtApplication() = default;

void QtApplication::becomeAgent() {
    // Closing the panel, the only window, does not end the program.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // Only the autostart entry says whether the program is started with the session.
    connect(qGuiApp, &QGuiApplication::saveStateRequest, this, [](QSessionManager& manager) {
        manager.setRestartHint(QSessionManager::RestartNever);
    });
}

void QtApplication::activate() {
    // An icon that lies in another program's bar is a window too, which no window manager knows.
    for (QWindow* const window : QGuiApplication::topLevelWindows())
        if (window->isVisible() && !(window->flags() & Qt::BypassWindowManagerHint))
            window->requestActivate();
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
