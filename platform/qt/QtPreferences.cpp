#include "platform/qt/QtPreferences.h"

#include <utility>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QStandardPaths>

namespace noctra {

namespace {

QString keyText(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

constexpr qsizetype largestFile = 1 << 20; // a preferences file has a few hundred bytes

/// What is in a file of preferences, judged by its lines: QSettings takes most garbage for good.
enum class Contents { plain, foreign, damaged };

/// Plain lines come back as they were when QSettings writes the file again. Foreign ones do not (a
/// comment, a byte-order mark, a letter beyond ASCII, a key that stands there twice), though they
/// are no damage.
Contents judge(QByteArray bytes) {
    static const QRegularExpression plainLine(
        QStringLiteral(R"(^(\[[A-Za-z0-9_.%\\/-]+\]|[A-Za-z0-9_.%\\/-]+=(?!@)[ -~]*)?$)"));
    bool foreign = bytes.startsWith("\xEF\xBB\xBF");
    if (foreign)
        bytes.remove(0, 3);
    if (bytes.contains('\0') || bytes.size() > largestFile)
        return Contents::damaged;
    QSet<QByteArray> keys;
    QByteArray section;
    for (QByteArray line : bytes.split('\n')) {
        line = line.trimmed();
        const bool comment = line.startsWith('#') || line.startsWith(';');
        const bool header = line.startsWith('[') && line.endsWith(']');
        const auto equals = line.indexOf('=');
        if (!line.isEmpty() && !comment && !header && equals <= 0)
            return Contents::damaged;
        if (header)
            section = line;
        const QByteArray key = section + line.left(equals);
        foreign = foreign || !plainLine.match(QString::fromLatin1(line)).hasMatch() ||
                  (!header && equals > 0 && keys.contains(key));
        keys.insert(key);
    }
    return foreign ? Contents::foreign : Contents::plain;
}

/// The first name of the form `path` + `what` + a number that nothing has yet; empty after 999.
QString unusedName(const QString& path, const char* what) {
    for (int number = 1; number < 1000; ++number) {
        const QString name = path + what + QString::number(number);
        if (!QFileInfo(name).isSymLink() && !QFileInfo::exists(name))
            return name;
    }
    return {};
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
        QFile file(path_);
        const bool readable = QFileInfo(path_).isFile() && file.open(QIODevice::ReadOnly);
        const QByteArray bytes = readable ? file.read(largestFile + 1) : QByteArray();
        const Contents contents = readable ? judge(bytes) : Contents::damaged;
        if (contents == Contents::foreign)
            original_ = bytes;
        if (contents == Contents::damaged) {
            readOnly_ = !moveAside();
            if (readOnly_)
                return;
        }
    }
    settings_ = std::make_unique<QSettings>(path_, QSettings::IniFormat);
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

void QtPreferences::keepCopy() {
    const QByteArray bytes = std::exchange(original_, {});
    QFile copy(unusedName(path_, ".before-"));
    if (!copy.fileName().isEmpty() && copy.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
        copy.write(bytes) == bytes.size())
        log_.log("The preferences as they were are kept in " + copy.fileName().toStdString());
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
    const bool wasForeign = !original_.isEmpty();
    if (wasForeign)
        keepCopy();
    settings_->sync();
    const bool failed = settings_->status() == QSettings::AccessError;
    if (wasForeign) // a first reading that met a comment has left a mark that hides later errors
        settings_ = std::make_unique<QSettings>(path_, QSettings::IniFormat);
    if (failed && !complainedAboutWriting_)
        log_.log("ERROR: The preferences cannot be written to " + path_.toStdString());
    complainedAboutWriting_ = failed;
}

} // namespace noctra
