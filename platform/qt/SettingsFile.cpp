#include "platform/qt/SettingsFile.h"

#include <algorithm>
#include <cstdio>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>

namespace noctra {

namespace {

/// Also where what the links lead to is not there yet.
QString behindLinks(QString path) {
    constexpr int mostLinks = 40; // as many as the kernel follows
    for (int links = 0; links < mostLinks && QFileInfo(path).isSymLink(); ++links)
        path = QFileInfo(path).symLinkTarget();
    return path;
}

/// Whether everything has reached the file.
bool isWhole(const QString& path, const QVariantMap& changes) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = '\n' + file.readAll();
    const QStringList keys = changes.keys();
    return text.endsWith('\n') && std::all_of(keys.begin(), keys.end(), [&](const QString& key) {
               return text.contains('\n' + key.toUtf8() + '=');
           });
}

} // namespace

bool writeSettings(const QString& path, const QVariantMap& changes) {
    const QString file = behindLinks(path);
    // Not the file itself: on a full disk Qt 6.4 puts an empty file in its place and reports
    // success.
    const QString next = file + QStringLiteral(".next");
    QFile::remove(next);
    QFile::remove(next + QStringLiteral(".lock")); // an earlier run's would be waited for
    bool written =
        QFileInfo::exists(file) ? QFile::copy(file, next) : QDir().mkpath(QFileInfo(file).path());
    if (written) {
        QSettings settings(next, QSettings::IniFormat);
        for (auto change = changes.begin(); change != changes.end(); ++change)
            settings.setValue(change.key(), change.value());
        settings.sync();
        written = settings.status() != QSettings::AccessError;
    }
    written =
        written && isWhole(next, changes) &&
        std::rename(QFile::encodeName(next).constData(), QFile::encodeName(file).constData()) == 0;
    if (!written)
        QFile::remove(next);
    return written;
}

} // namespace noctra
