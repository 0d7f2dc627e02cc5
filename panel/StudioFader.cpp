#include "panel/StudioFader.h"

#include <algorithm>

namespace noctra {

namespace {

/// What the cap needs of the height above and below the slot.
constexpr double capRoom = 40.0;
constexpr double shortestTrack = 110.0;

} // namespace

StudioFader::Body StudioFader::body(double width, double height) const {
    return {{0.0, 0.0, width, height},
            {value, color, isEnabled, std::max(height - capRoom, shortestTrack), minimumValue,
             onDragStateChanged}};
}

} // namespace noctra
