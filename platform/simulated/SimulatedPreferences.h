#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

#include "platform/Preferences.h"

namespace noctra {

/// Preferences in memory, with a record of the keys written.
class SimulatedPreferences : public Preferences {
public:
    using Value = std::variant<bool, double, std::string>;

    /// What the store holds before the program starts.
    void store(std::string_view key, Value value) { values_[std::string(key)] = std::move(value); }
    [[nodiscard]] bool contains(std::string_view key) const;
    [[nodiscard]] const std::vector<std::string>& writtenKeys() const { return written_; }
    void forgetWrites() { written_.clear(); }
    /// The keys that were written before the store was last flushed.
    [[nodiscard]] const std::vector<std::string>& savedKeys() const { return saved_; }

    [[nodiscard]] bool boolForKey(std::string_view key) const override;
    [[nodiscard]] double doubleForKey(std::string_view key) const override;
    [[nodiscard]] std::optional<double> numberForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
    void setDouble(std::string_view key, double value) override;
    void flush() override { saved_ = written_; }

private:
    std::map<std::string, Value> values_;
    std::vector<std::string> written_;
    std::vector<std::string> saved_;
};

} // namespace noctra
