#include "platform/qt/QtPreferences.h"

#include <utility>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>

#include "platform/qt/IniContents.h"
#include "platform/qt/SettingsFile.h"

namespace noctra {

namespace {

QString keyText(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

/// The first name of the form `path` + `what` + a number that nothing has yet; empty after 999.
QString unusedName(const QString& path, const char* what) {
    for (int number = 1; number < 1000; ++number) {
        QString name = path + what + QString::number(number);
        if (!QFileInfo(name).isSymLink() && !QFileInfo::exists(name))
            return name;
    }
    return {};
}

} // namespace

QtPreferences::QtPreferences(const QString& path, MainQueue& mainQueue, Log& log)
    : path_(path), log_(log), saveItem_(mainQueue, [this] { save(); }) {
    open();
}

QtPreferences::~QtPreferences() {
    QtPreferences::flush();
}

QString QtPreferences::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           "/noctra/noctra.conf";
}

void QtPreferences::open() {
    if (QFileInfo::exists(path_)) { // what a link leads to
        QFile file(path_);
        const bool readable = QFileInfo(path_).isFile() && file.open(QIODevice::ReadOnly);
        const QByteArray bytes = readable ? file.read(largestIni + 1) : QByteArray();
        const IniContents contents = readable ? judgeIni(bytes) : IniContents::damaged;
        if (contents == IniContents::foreign)
            original_ = bytes;
        if (contents == IniContents::damaged && !moveAside()) {
            mayWrite_ = false;
            return;
        }
    }
    const QSettings settings(path_, QSettings::IniFormat);
    const MutexLock lock(valuesMutex_);
    for (const QString& key : settings.childKeys())
        if (!key.isEmpty()) // QSettings warns of it
            values_.insert(key, settings.value(key));
}

bool QtPreferences::moveAside() {
    const QString aside = unusedName(path_, ".damaged-");
    if (!aside.isEmpty() && QDir().rename(path_, aside)) {
        log_.log("ERROR: The preferences in " + path_.toStdString() +
                 " cannot be read; starting with defaults, the file is kept as " +
                 aside.toStdString());
        return true;
    }
    log_.log("ERROR: The preferences in " + path_.toStdString() +
             " cannot be read nor moved aside; starting with defaults, nothing will be saved");
    return false;
}

std::optional<QString> QtPreferences::copyOriginal() const {
    const QString name = unusedName(path_, ".before-");
    QFile copy(name);
    if (name.isEmpty() || !copy.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return std::nullopt;
    if (copy.write(original_) != original_.size() || !copy.flush()) {
        copy.remove();
        return std::nullopt;
    }
    return name;
}

bool QtPreferences::wasLossless(const QVariantMap& changes) const {
    QFile file(path_);
    QSet<QByteArray> keys;
    for (const QString& key : changes.keys())
        keys.insert(key.toUtf8());
    return file.open(QIODevice::ReadOnly) && keepsLines(original_, file.readAll(), keys);
}

std::optional<QString> QtPreferences::textForKey(std::string_view key) const {
    const QVariant value = [&] {
        const MutexLock lock(valuesMutex_);
        return values_.value(keyText(key));
    }();
    if (!value.isValid())
        return std::nullopt;
    return value.toString(); // empty for a list, which is nothing that this program has written
}

bool QtPreferences::boolForKey(std::string_view key) const {
    const auto text = textForKey(key);
    if (!text)
        return false;
    const QString word = text->toLower();
    if (word == "true" || word == "yes" || word == "1")
        return true;
    if (word != "false" && word != "no" && word != "0")
        complain(key, "true or false");
    return false;
}

double QtPreferences::doubleForKey(std::string_view key) const {
    return numberForKey(key).value_or(0.0);
}

std::optional<double> QtPreferences::numberForKey(std::string_view key) const {
    const auto text = textForKey(key);
    if (!text)
        return std::nullopt;
    bool isNumber = false;
    const double value = text->toDouble(&isNumber);
    if (isNumber)
        return value;
    complain(key, "a number");
    return std::nullopt;
}

void QtPreferences::complain(std::string_view key, const char* expected) const {
    log_.log("ERROR: Ignored the preference " + std::string(key) + ", which is not " + expected);
}

void QtPreferences::setBool(std::string_view key, bool value) {
    write(key, value);
}

void QtPreferences::setDouble(std::string_view key, double value) {
    write(key, value);
}

void QtPreferences::write(std::string_view key, const QVariant& value) {
    {
        const MutexLock lock(valuesMutex_);
        values_.insert(keyText(key), value);
        if (!mayWrite_)
            return;
        unsaved_.insert(keyText(key), value);
    }
    saveItem_.schedule(Seconds(0));
}

void QtPreferences::save() {
    fileQueue_.async([this, changes = takeUnsaved()] { writeFile(changes); });
}

QVariantMap QtPreferences::takeUnsaved() {
    const MutexLock lock(valuesMutex_);
    return std::exchange(unsaved_, {});
}

void QtPreferences::flush() {
    fileQueue_.sync([this, changes = takeUnsaved()] { writeFile(changes); });
}

void QtPreferences::writeFile(const QVariantMap& changes) {
    if (changes.isEmpty())
        return; // saved in another way meanwhile
    const auto copy = original_.isEmpty() ? std::optional(QString()) : copyOriginal();
    const bool written = copy && writeSettings(path_, changes);
    if (!written) { // it goes with the next save
        const MutexLock lock(valuesMutex_);
        for (auto change = changes.begin(); change != changes.end(); ++change)
            if (values_.value(change.key()) == change.value()) // else a newer one is on its way
                unsaved_.insert(change.key(), change.value());
    }
    if (copy && !copy->isEmpty()) {
        if (!written || wasLossless(changes))
            QFile::remove(*copy);
        else
            log_.log("The preferences as they were are kept in " + copy->toStdString());
        if (written)
            original_.clear();
    }
    if (!written && !complainedAboutWriting_)
        log_.log("ERROR: The preferences cannot be written to " + path_.toStdString());
    complainedAboutWriting_ = !written;
}

} // namespace noctra
