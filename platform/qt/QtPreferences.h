#pragma once

#include <string>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariantMap>

#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "foundation/SerialQueue.h"
#include "foundation/ThreadSafety.h"
#include "platform/Preferences.h"

namespace noctra {

/// Preferences in an INI file (QSettings), in its General group. Keys that the program does not
/// know stay in the file.
///
/// A file that cannot be read or understood is moved aside, to its name with ".damaged-" and a
/// number, before anything is written in its place; where it cannot be moved, nothing is written at
/// all. A file that may hold more than writing it again would keep (comments, say) is copied first,
/// to its name with ".before-" and a number; the copy goes again where nothing was lost. Writes
/// reach the file on a later turn of the main queue, all those of one turn together.
class QtPreferences : public Preferences {
public:
    /// `path`: the file; it and its directory need not exist. `mainQueue` and `log` outlive the
    /// object.
    QtPreferences(const QString& path, MainQueue& mainQueue, Log& log);
    ~QtPreferences() override;

    /// noctra/noctra.conf in $XDG_CONFIG_HOME, else in ~/.config.
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] bool boolForKey(std::string_view key) const override;
    [[nodiscard]] double doubleForKey(std::string_view key) const override;
    [[nodiscard]] std::optional<double> numberForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
    void setDouble(std::string_view key, double value) override;
    void flush() override;

private:
    void open();
    [[nodiscard]] bool moveAside();
    void save();
    [[nodiscard]] QVariantMap takeUnsaved();
    // On fileQueue_:
    void writeFile(const QVariantMap& changes);
    /// The copy's name; nothing: it could not be made.
    [[nodiscard]] std::optional<QString> copyOriginal() const;
    [[nodiscard]] bool wasLossless(const QVariantMap& changes) const;

    void write(std::string_view key, const QVariant& value);
    [[nodiscard]] std::optional<QString> textForKey(std::string_view key) const;
    void complain(std::string_view key, const char* expected) const;

    const QString path_;
    Log& log_;
    bool mayWrite_ = true;
    mutable Mutex valuesMutex_;
    QVariantMap
        values_ GUARDED_BY(valuesMutex_); ///< what the file held, and what was written since
    QVariantMap unsaved_ GUARDED_BY(valuesMutex_); ///< written since the last save
    WorkItem saveItem_;
    // On fileQueue_:
    QByteArray original_; ///< what the file held, where rewriting it would lose some of that
    bool complainedAboutWriting_ = false;
    SerialQueue fileQueue_{"com.noctra.preferences"};
};

} // namespace noctra
