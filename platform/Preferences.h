#pragma once

#include <optional>
#include <string_view>

namespace noctra {

/// The user's stored settings: a key-value store that can tell a missing key from a stored zero.
///
/// Reads on any thread, writes on the main thread. Reads of a key that is missing or of another
/// type give the stated default. Writes are seen by later reads at once and reach the disk in the
/// store's own time; a store that cannot be written says so in the log and keeps the values for the
/// life of the process.
class Preferences {
public:
    virtual ~Preferences() = default;

    /// False when missing or not a Boolean.
    [[nodiscard]] virtual bool boolForKey(std::string_view key) const = 0;
    /// 0.0 when missing or not a number.
    [[nodiscard]] virtual double doubleForKey(std::string_view key) const = 0;
    /// Nothing when missing or not a number.
    [[nodiscard]] virtual std::optional<double> numberForKey(std::string_view key) const = 0;

    virtual void setBool(std::string_view key, bool value) = 0;
    virtual void setDouble(std::string_view key, double value) = 0;
    /// Comes back when all that was set before is on the disk or cannot be put there. Takes as long
    /// as the disk does; any thread.
    virtual void flush() = 0;
};

} // namespace noctra
