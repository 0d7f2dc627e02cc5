#include "platform/qt/IniContents.h"

#include <QtCore/QList>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QString>

namespace noctra {

IniContents judgeIni(QByteArray bytes) {
    static const QRegularExpression plainLine(
        QStringLiteral(R"(^(\[[A-Za-z0-9_.%\\/-]+\]|[A-Za-z0-9_.%\\/-]+=(?!@)[ -~]*)?$)"));
    bool foreign = bytes.startsWith("\xEF\xBB\xBF");
    if (foreign)
        bytes.remove(0, 3);
    if (bytes.contains('\0') || bytes.size() > largestIni)
        return IniContents::damaged;
    QSet<QByteArray> keys;
    QByteArray section;
    for (QByteArray line : bytes.split('\n')) {
        line = line.trimmed();
        const bool comment = line.startsWith('#') || line.startsWith(';');
        const bool header = line.startsWith('[') && line.endsWith(']');
        const auto equals = line.indexOf('=');
        if (!line.isEmpty() && !comment && !header && equals <= 0)
            return IniContents::damaged;
        if (header)
            section = line;
        const QByteArray key = section + line.left(equals);
        foreign = foreign || !plainLine.match(QString::fromLatin1(line)).hasMatch() ||
                  (!header && equals > 0 && keys.contains(key));
        keys.insert(key);
    }
    return foreign ? IniContents::foreign : IniContents::plain;
}

} // namespace noctra
