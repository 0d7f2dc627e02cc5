#include "platform/qt/QtClipboard.h"

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

namespace noctra {

void QtClipboard::clearContents() {
    QGuiApplication::clipboard()->clear();
}

void QtClipboard::setString(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

} // namespace noctra
