#pragma once

#include <QtCore/QString>
#include <QtCore/QVariantMap>

namespace noctra {

/// Puts values into the General group of an INI file; what else it holds stays, and so does a link
/// that leads to it. Makes the file and its directory where they are missing. False when that
/// fails: the file is then as it was. Nobody else may write the file at the same time.
[[nodiscard]] bool writeSettings(const QString& path, const QVariantMap& changes);

} // namespace noctra
