#include "platform/qt/IniContents.h"

#include <QtCore/QList>
#include <QtCore/QRegularExpression>
#include <QtCore/QString>

namespace noctra {

namespace {

constexpr auto generalGroup = "[General]";

/// As QSettings divides a file: a carriage return alone ends a line, too.
QList<QByteArray> linesOf(QByteArray bytes) {
    return bytes.replace('\r', '\n').split('\n');
}

bool isHeader(const QByteArray& line) {
    return line.startsWith('[') && line.endsWith(']');
}

/// Skips the digits to the base of 8 or 16 at `at`; returns the character that they stand for.
char charOf(const QByteArray& bytes, qsizetype& at, int base) {
    unsigned code = 0;
    for (; at < bytes.size(); ++at) {
        bool isDigit = false;
        const unsigned digit = bytes.mid(at, 1).toUInt(&isDigit, base);
        if (!isDigit)
            break;
        code = (code * static_cast<unsigned>(base) + digit) & 0xFFFFU; // as QSettings does
    }
    return code < 0x80 ? static_cast<char>(code) : '?';
}

/// Whether QSettings would take a part of the file for a stream of QDataStream's. It does as such a
/// stream says: a few bytes make it ask for gigabytes, or nest values until the stack is full.
bool holdsStreams(const QByteArray& bytes) {
    QByteArray text; // as far as that matters here, what QSettings makes of quotes and escapes
    for (qsizetype at = 0; at < bytes.size();) {
        const char c = bytes[at++];
        if (c == '"')
            continue;
        if (c != '\\' || at == bytes.size()) {
            text += c;
            continue;
        }
        const char escaped = bytes[at];
        if (escaped >= '0' && escaped <= '7')
            text += charOf(bytes, at, 8);
        else if (++at; escaped == 'x')
            text += charOf(bytes, at, 16);
        else if (QByteArrayView("abfnrtv\"?'\\").contains(escaped))
            text += '?';
    }
    return text.contains("@Variant(") || text.contains("@DateTime(");
}

} // namespace

IniContents judgeIni(QByteArray bytes) {
    static const QRegularExpression plainLine(
        QStringLiteral(R"(^(\[[A-Za-z0-9_.-]+\]|[A-Za-z0-9_.-]+=[A-Za-z0-9_.+-]*)?$)"));
    bool foreign = bytes.startsWith("\xEF\xBB\xBF");
    if (foreign)
        bytes.remove(0, 3);
    if (bytes.contains('\0') || bytes.size() > largestIni || holdsStreams(bytes))
        return IniContents::damaged;
    QSet<QByteArray> keys;
    QByteArray section;
    for (QByteArray line : linesOf(bytes)) {
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
    for (QByteArray line : linesOf(after)) {
        line = line.trimmed();
        if (isHeader(line))
            section = line;
        kept.insert(section + line);
    }
    section = generalGroup;
    QSet<QByteArray> seen;
    for (QByteArray line : linesOf(before)) {
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
