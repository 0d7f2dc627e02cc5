#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSet>

namespace noctra {

/// What is in an INI file, judged by its lines: QSettings takes most garbage for good.
enum class IniContents {
    plain,   ///< comes back as it was when QSettings writes the file again
    foreign, ///< may not (a comment, a byte-order mark, a key that stands there twice, anything but
             ///< words and numbers), though it is no damage
    damaged, ///< is no INI file, far too large for one of preferences, or dangerous to read
};

/// The size from which on a file is too large: a few hundred bytes would do.
inline constexpr qsizetype largestIni = 1 << 16;

[[nodiscard]] IniContents judgeIni(QByteArray bytes);

/// Whether every line of `before` is also in `after`, which QSettings made of it by giving the
/// General group's `changedKeys` other values. Lines that give these keys a value do not count,
/// unless there is more than one for a key. Order, empty lines and white space do not count.
[[nodiscard]] bool keepsLines(const QByteArray& before, const QByteArray& after,
                              const QSet<QByteArray>& changedKeys);

} // namespace noctra
