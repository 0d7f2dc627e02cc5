#pragma once

#include <QtCore/QByteArray>

namespace noctra {

/// What is in an INI file, judged by its lines: QSettings takes most garbage for good.
enum class IniContents {
    plain,   ///< comes back as it was when QSettings writes the file again
    foreign, ///< does not (a comment, a byte-order mark, a letter beyond ASCII, a key that stands
             ///< there twice), though it is no damage
    damaged, ///< is no INI file, or far too large for one of preferences
};

/// The size from which on a file is too large: a few hundred bytes would do.
inline constexpr qsizetype largestIni = 1 << 20;

[[nodiscard]] IniContents judgeIni(QByteArray bytes);

} // namespace noctra
