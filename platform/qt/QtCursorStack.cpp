#include "platform/qt/QtCursorStack.h"

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>

namespace noctra {

void QtCursorStack::pushPointingHand() {
    QGuiApplication::setOverrideCursor(QCursor(Qt::PointingHandCursor));
}

void QtCursorStack::pop() {
    QGuiApplication::restoreOverrideCursor();
}

} // namespace noctra
