#include "platform/qt/QtFonts.h"

#include <algorithm>

#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtGui/QFontDatabase>
#include <QtGui/QFontInfo>

#include "platform/qt/OpenTypeTables.h"

namespace noctra {

namespace {

// Bytes; the program's own fonts have far fewer.
constexpr qint64 largestFont = 16 << 20;

/// What Qt draws with in the end: the desktop's setting may be a generic name such as "monospace".
QString resolvedFamily(QFontDatabase::SystemFont kind) {
    return QFontInfo(QFontDatabase::systemFont(kind)).family();
}

/// Where there is none, `otherwise`.
QString firstFixedFamily(const QString& otherwise) {
    for (const QString& family : QFontDatabase::families(QFontDatabase::Latin))
        if (QFontDatabase::isFixedPitch(family) && QFontDatabase::isSmoothlyScalable(family) &&
            !QFontDatabase::isPrivateFamily(family))
            return family;
    return otherwise;
}

} // namespace

bool QtFonts::registerFont(const std::string& path) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.read(largestFont);
    const auto name = postScriptName(openTypeTable(bytes, "name"));
    if (!name)
        return false;
    const int weight = weightClass(openTypeTable(bytes, "OS/2")).value_or(QFont::Normal);
    fonts_.try_emplace(*name, Registered{path, std::clamp(weight, 100, 900), {}});
    return true;
}

std::optional<FontFace> QtFonts::find(std::string_view name) const {
    const auto found = fonts_.find(name);
    if (found == fonts_.end())
        return std::nullopt;
    Registered& font = found->second;
    if (font.family.empty()) {
        const int id = QFontDatabase::addApplicationFont(QString::fromStdString(font.file));
        const QStringList families = QFontDatabase::applicationFontFamilies(id);
        if (families.isEmpty())
            return std::nullopt;
        font.family = families.first().toStdString();
    }
    return FontFace{font.family, font.weight};
}

std::string QtFonts::systemFamily() const {
    return resolvedFamily(QFontDatabase::GeneralFont).toStdString();
}

std::string QtFonts::fixedFamily() const {
    QString family = resolvedFamily(QFontDatabase::FixedFont);
    // In some languages the system names a fixed font whose letters differ in width.
    if (!QFontDatabase::isFixedPitch(family))
        family = firstFixedFamily(family);
    return family.toStdString();
}

} // namespace noctra
