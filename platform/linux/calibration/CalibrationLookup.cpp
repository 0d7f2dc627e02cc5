#include "platform/linux/calibration/CalibrationLookup.h"

#include <utility>

#include "platform/linux/calibration/VcgtTables.h"

namespace noctra {

CalibrationLookup::CalibrationLookup(std::vector<std::unique_ptr<ProfileSource>> sources)
    : sources_(std::move(sources)) {}

void CalibrationLookup::beginPass(std::chrono::milliseconds budget) {
    for (const auto& source : sources_)
        source->beginPass(budget);
}

std::optional<CalibrationLookup::Found>
CalibrationLookup::tablesFor(const ProfileSource::Output& output, std::size_t entries) {
    for (const auto& source : sources_) {
        ProfileSource::Found found = source->profileOf(output);
        if (auto tables = vcgtTables(found.profile, entries))
            return Found{std::move(*tables), std::move(found.origin)};
    }
    return std::nullopt;
}

} // namespace noctra
