#include "platform/linux/CapturedDisplays.h"

#include <utility>

namespace noctra {

void CapturedDisplays::capture(DisplayId display, CapturedTables tables) {
    displays_[display].tables = std::move(tables);
}

const CapturedTables* CapturedDisplays::withSize(DisplayId display, std::size_t entries) const {
    const auto found = displays_.find(display);
    return found != displays_.end() && found->second.tables.native.size() == entries
               ? &found->second.tables
               : nullptr;
}

std::optional<NativeTables> CapturedDisplays::tablesFor(DisplayId display,
                                                        std::size_t entries) const {
    if (const CapturedTables* fitting = withSize(display, entries))
        return fitting->native;
    const auto found = displays_.find(display);
    if (found == displays_.end())
        return std::nullopt;
    NativeTables resampled;
    resampled.resize(entries);
    tablesToNative(found->second.tables.sampled, nullptr, resampled);
    return resampled;
}

void CapturedDisplays::setFiltered(DisplayId display, bool isFiltered) {
    if (const auto found = displays_.find(display); found != displays_.end())
        found->second.isFiltered = isFiltered;
}

bool CapturedDisplays::isFiltered(DisplayId display) const {
    const auto found = displays_.find(display);
    return found != displays_.end() && found->second.isFiltered;
}

} // namespace noctra
