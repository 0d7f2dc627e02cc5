#include "platform/qt/QtFonts.h"

#include <algorithm>

#include <QtCore/QString>
#include <QtGui/QFontDatabase>
#include <QtGui/QFontInfo>
#include <QtGui/QRawFont>

#include "platform/qt/OpenTypeTables.h"

namespace noctra {

namespace {

/// What Qt draws with in the end: the desktop's setting may be a generic name such as "monospace".
std::string resolvedFamily(QFontDatabase::SystemFont kind) {
    return QFontInfo(QFontDatabase::systemFont(kind)).family().toStdString();
}

} // namespace

bool QtFonts::registerFont(const std::string& path) {
    const QString file = QString::fromStdString(path);
    const int id = QFontDatabase::addApplicationFont(file);
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (families.isEmpty())
        return false;
    // The size matters to none of the tables.
    const QRawFont font(file, 16.0);
    if (const auto name = postScriptName(font.fontTable("name"))) {
        const int weight = weightClass(font.fontTable("OS/2")).value_or(QFont::Normal);
        faces_[*name] = {families.first().toStdString(), std::clamp(weight, 100, 900)};
    }
    return true;
}

std::optional<FontFace> QtFonts::find(std::string_view name) const {
    const auto face = faces_.find(name);
    return face == faces_.end() ? std::nullopt : std::optional(face->second);
}

std::string QtFonts::systemFamily() const {
    return resolvedFamily(QFontDatabase::GeneralFont);
}

std::string QtFonts::fixedFamily() const {
    return resolvedFamily(QFontDatabase::FixedFont);
}

} // namespace noctra
