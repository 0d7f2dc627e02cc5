#include "platform/qt/QtNumberFormat.h"

#include <QtCore/QLocale>

namespace noctra {

std::optional<std::string> QtNumberFormat::decimal(long long number) const {
    QLocale locale = QLocale::system();
    if (locale.language() == QLocale::C)
        locale = QLocale(QLocale::English, QLocale::UnitedStates);
    const QString text = locale.toString(number);
    if (text.isEmpty())
        return std::nullopt;
    return text.toStdString();
}

} // namespace noctra
