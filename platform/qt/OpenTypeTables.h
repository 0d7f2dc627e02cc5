#pragma once

#include <optional>
#include <string>

#include <QtCore/QByteArray>

namespace noctra {

// Facts out of a font file's tables (OpenType 1.9). Files and tables that are damaged or cut short
// hold nothing.

/// The table called `tag` (four letters) of a font file's bytes; empty where there is none.
QByteArray openTypeTable(const QByteArray& file, const char* tag);

/// The PostScript name, from the table "name".
std::optional<std::string> postScriptName(const QByteArray& nameTable);

/// The weight class, 1 to 1000 in a sound font, from the table "OS/2".
std::optional<int> weightClass(const QByteArray& os2Table);

} // namespace noctra
