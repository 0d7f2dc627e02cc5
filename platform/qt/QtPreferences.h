#pragma once

#include <memory>
#include <string>

#include <QtCore/QSettings>
#include <QtCore/QString>

#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "platform/Preferences.h"

namespace noctra {

/// Preferences in an INI file (QSettings), in its General group. Keys that the program does not
/// know stay in the file.
///
/// A file that cannot be read or understood is moved aside, to its name with ".damaged-" and a
/// number, before anything is written in its place; where it cannot be moved, nothing is written at
/// all. A file that holds more than writing it again would keep (comments, say) is copied first, to
/// its name with ".before-" and a number. Writes reach the file on a later turn of the main queue,
/// all those of one turn together.
class QtPreferences : public Preferences {
public:
    /// `path`: the file; it and its directory need not exist. `mainQueue` and `log` outlive the
    /// object.
    QtPreferences(const QString& path, MainQueue& mainQueue, Log& log);
    ~QtPreferences() override;

    /// Writes what is still only in memory, now.
    void flush();

    /// noctra/noctra.conf in $XDG_CONFIG_HOME, else in ~/.config.
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] bool boolForKey(std::string_view key) const override;
    [[nodiscard]] double doubleForKey(std::string_view key) const override;
    [[nodiscard]] std::optional<double> numberForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
    void setDouble(std::string_view key, double value) override;

private:
    void open();
    [[nodiscard]] bool moveAside();
    void keepCopy();
    void write(std::string_view key, const QVariant& value);
    [[nodiscard]] std::optional<QString> textForKey(std::string_view key) const;
    void complain(std::string_view key, const char* expected) const;

    const QString path_;
    Log& log_;
    std::unique_ptr<QSettings> settings_;
    QVariantMap unsaved_; ///< written since the program started, where the file must not be touched
    QByteArray original_; ///< what the file held, where rewriting it would lose some of that
    bool readOnly_ = false;
    bool complainedAboutWriting_ = false;
    WorkItem flushItem_;
};

} // namespace noctra
