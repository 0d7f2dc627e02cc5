#include "platform/simulated/SimulatedPreferences.h"

namespace noctra {

bool SimulatedPreferences::contains(std::string_view key) const {
    return values_.contains(std::string(key));
}

bool SimulatedPreferences::boolForKey(std::string_view key) const {
    const auto found = values_.find(std::string(key));
    const bool* value = found == values_.end() ? nullptr : std::get_if<bool>(&found->second);
    return value != nullptr && *value;
}

double SimulatedPreferences::doubleForKey(std::string_view key) const {
    return numberForKey(key).value_or(0.0);
}

std::optional<double> SimulatedPreferences::numberForKey(std::string_view key) const {
    const auto found = values_.find(std::string(key));
    const double* value = found == values_.end() ? nullptr : std::get_if<double>(&found->second);
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

void SimulatedPreferences::setBool(std::string_view key, bool value) {
    values_[std::string(key)] = value;
    written_.emplace_back(key);
}

void SimulatedPreferences::setDouble(std::string_view key, double value) {
    values_[std::string(key)] = value;
    written_.emplace_back(key);
}

} // namespace noctra
