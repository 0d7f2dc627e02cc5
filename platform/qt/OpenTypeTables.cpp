#include "platform/qt/OpenTypeTables.h"

#include <QtCore/QtEndian>

namespace noctra {

namespace {

std::optional<int> number(const QByteArray& table, qsizetype offset) {
    if (offset + 2 > table.size())
        return std::nullopt;
    return qFromBigEndian<quint16>(table.constData() + offset);
}

} // namespace

QByteArray openTypeTable(const QByteArray& file, const char* tag) {
    constexpr int headerSize = 12;
    constexpr int recordSize = 16;
    const int count = number(file, 4).value_or(0);
    for (int index = 0; index < count; ++index) {
        const QByteArray record = file.mid(headerSize + recordSize * index, recordSize);
        if (record.size() < recordSize)
            return {};
        if (!record.startsWith(tag))
            continue;
        const auto offset = qFromBigEndian<quint32>(record.constData() + 8);
        const auto length = qFromBigEndian<quint32>(record.constData() + 12);
        const QByteArray table = file.mid(offset, length);
        return table.size() == length ? table : QByteArray();
    }
    return {};
}

std::optional<std::string> postScriptName(const QByteArray& nameTable) {
    constexpr int headerSize = 6;
    constexpr int recordSize = 12;
    constexpr int postScript = 6;
    constexpr int macintosh = 1; // one byte to a character; the other platforms have UTF-16
    const std::optional<int> count = number(nameTable, 2);
    const std::optional<int> texts = number(nameTable, 4);
    for (int index = 0; texts && index < *count; ++index) {
        const qsizetype record = headerSize + recordSize * index;
        const std::optional<int> length = number(nameTable, record + 8);
        const std::optional<int> offset = number(nameTable, record + 10);
        if (!offset)
            return std::nullopt;
        if (number(nameTable, record + 6) != postScript)
            continue;
        const QByteArray text = nameTable.mid(*texts + *offset, *length);
        if (text.size() < *length)
            return std::nullopt;
        std::string name;
        const bool wide = number(nameTable, record) != macintosh;
        for (qsizetype at = wide ? 1 : 0; at < text.size(); at += wide ? 2 : 1)
            name += text.at(at); // these names are plain ASCII
        return name;
    }
    return std::nullopt;
}

std::optional<int> weightClass(const QByteArray& os2Table) {
    return number(os2Table, 4);
}

} // namespace noctra
