#include "platform/qt/QtPreferences.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

namespace noctra {

namespace {

QString keyText(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

/// QSettings takes a file that it may not read for an empty one, and finds out what is wrong with a
/// section only when it is asked for the section's keys.
bool isUnderstood(const QString& path) {
    if (!QFileInfo(path).isFile() || !QFile(path).open(QIODevice::ReadOnly))
        return false;
    const QSettings settings(path, QSettings::IniFormat);
    static_cast<void>(settings.allKeys());
    return settings.status() == QSettings::NoError;
}

} // namespace

QtPreferences::QtPreferences(const QString& path, MainQueue& mainQueue, Log& log)
    : path_(path), log_(log), flushItem_(mainQueue, [this] { flush(); }) {
    open();
}

QtPreferences::~QtPreferences() {
    if (flushItem_.isPending())
        flush();
}

QString QtPreferences::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           "/noctra/noctra.conf";
}

void QtPreferences::open() {
    if (QFileInfo(path_).isSymLink() || QFileInfo::exists(path_)) {
        if (!isUnderstood(path_)) {
            readOnly_ = !moveAside();
            if (readOnly_)
                return;
        }
    }
    settings_ = std::make_unique<QSettings>(path_, QSettings::IniFormat);
}

bool QtPreferences::moveAside() {
    for (int number = 1; number < 1000; ++number) {
        const QString aside = path_ + ".damaged-" + QString::number(number);
        if (QFileInfo(aside).isSymLink() || QFileInfo::exists(aside))
            continue;
        if (!QDir().rename(path_, aside))
            break;
        log_.log("ERROR: The preferences in " + path_.toStdString() +
                 " cannot be read; starting with defaults, the file is kept as " +
                 aside.toStdString());
        return true;
    }
    log_.log("ERROR: The preferences in " + path_.toStdString() +
             " cannot be read nor moved aside; starting with defaults, nothing will be saved");
    return false;
}

std::optional<QString> QtPreferences::textForKey(std::string_view key) const {
    const QString name = keyText(key);
    const QVariant value = settings_ ? settings_->value(name) : unsaved_.value(name);
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
    if (!settings_) {
        unsaved_.insert(keyText(key), value);
        return;
    }
    settings_->setValue(keyText(key), value);
    flushItem_.schedule(Seconds(0));
}

void QtPreferences::flush() {
    if (!settings_)
        return;
    settings_->sync();
    const bool failed = settings_->status() != QSettings::NoError;
    if (failed && !complainedAboutWriting_)
        log_.log("ERROR: The preferences cannot be written to " + path_.toStdString());
    complainedAboutWriting_ = failed;
}

} // namespace noctra
