#include "platform/qt/IniContents.h"

#include <QtCore/QList>
#include <QtCore/QRegularExpression>
#include <QtCore/QString>

namespace noctra {

namespace {

constexpr auto generalGroup = "[General]";

bool isHeader(const QByteArray& line) {
    return line.startsWith('[') && line.endsWith(']');
}

} // namespace

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
        const bool header = isHeader(line);
        const auto equals = line.indexOf('=');
        if (!line.isEmpty() && !comment && !header && equals < 0)
            return IniContents::damaged; // a line without a key is QSettings' form of "group/="
        if (header)
            section = line;
        const QByteArray key = section + line.left(equals);
        foreign = foreign || !plainLine.match(QString::fromLatin1(line)).hasMatch() ||
                  (!header && equals > 0 && keys.contains(key));
        keys.insert(key);
    }
    return foreign ? IniContents::foreign : IniContents::plain;
}

bool keepsLines(const QByteArray& before, const QByteArray& after,
                const QSet<QByteArray>& changedKeys) {
    QSet<QByteArray> kept;
    QByteArray section = generalGroup;
    for (QByteArray line : after.split('\n')) {
        line = line.trimmed();
        if (isHeader(line))
            section = line;
        kept.insert(section + line);
    }
    section = generalGroup;
    QSet<QByteArray> seen;
    for (QByteArray line : before.split('\n')) {
        line = line.trimmed();
        if (isHeader(line))
            section = line;
        const auto equals = line.indexOf('=');
        const QByteArray key = line.left(equals);
        const bool changed = section == generalGroup && equals > 0 && changedKeys.contains(key);
        if (!line.isEmpty() && !changed && !kept.contains(section + line))
            return false;
        if (equals > 0 && seen.contains(section + key))
            return false;
        seen.insert(section + key);
    }
    return true;
}

} // namespace noctra
