#include "platform/linux/calibration/CalibrationLookup.h"

#include <utility>

#include "platform/linux/calibration/IccProfileProperty.h"
#include "platform/linux/calibration/ProfileFile.h"
#include "platform/linux/calibration/VcgtTables.h"

namespace noctra {

std::optional<CalibrationLookup::Found> CalibrationLookup::tablesFor(xcb_randr_output_t output,
                                                                     std::string_view name,
                                                                     std::size_t entries) {
    if (const std::string file = colord_.defaultProfileFile(name); !file.empty())
        if (auto tables = vcgtTables(readProfileFile(file), entries))
            return Found{std::move(*tables), "colord: " + file};
    if (auto tables = vcgtTables(iccProfileOf(connection_, root_, output), entries))
        return Found{std::move(*tables), "_ICC_PROFILE"};
    return std::nullopt;
}

} // namespace noctra
