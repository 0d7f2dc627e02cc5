#pragma once

#include <optional>
#include <string>

#include <QtCore/QByteArray>

namespace noctra {

// Two facts out of a font file's tables (OpenType 1.9). Tables that are damaged or cut short hold
// nothing.

/// The PostScript name, from the table "name".
std::optional<std::string> postScriptName(const QByteArray& nameTable);

/// The weight class, 1 to 1000 in a sound font, from the table "OS/2".
std::optional<int> weightClass(const QByteArray& os2Table);

} // namespace noctra
