#include "platform/qt/QtNumberFormat.h"

#include <QtCore/QByteArray>
#include <QtCore/QLocale>
#include <QtCore/QString>

namespace noctra {

namespace {

/// Of numbers, by the order of POSIX. Qt's own is that of messages, which may be another.
QLocale environmentLocale() {
    for (const char* name : {"LC_ALL", "LC_NUMERIC", "LANG"})
        if (const QByteArray value = qgetenv(name); !value.isEmpty())
            return QLocale(QString::fromLocal8Bit(value));
    return QLocale::c();
}

} // namespace

std::optional<std::string> QtNumberFormat::decimal(long long number) const {
    QLocale locale = environmentLocale();
    if (locale.language() == QLocale::C)
        locale = QLocale(QLocale::English, QLocale::UnitedStates);
    const QString text = locale.toString(number);
    if (text.isEmpty())
        return std::nullopt;
    return text.toStdString();
}

} // namespace noctra
