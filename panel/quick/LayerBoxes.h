#pragma once

#include <vector>

#include <QtCore/QRect>

#include "panel/Layer.h"
#include "panel/quick/BoxPicture.h"
#include "panel/quick/PixelGrid.h"

namespace noctra {

/// `frame` in whole pixels from the top-left corner of a superlayer of `height` pixels: its
/// bottom-left corner goes to the nearest one, its width and height are whole by themselves, so
/// that equal layers stay equal wherever they lie.
[[nodiscard]] QRect pixelsOf(const Rect& frame, const PixelGrid& grid, int height);

/// Appends what draws `layer`, which covers `pixels`, and its sublayers.
void appendBoxes(const Layer& layer, const QRect& pixels, const PixelGrid& grid,
                 std::vector<PixelBox>& boxes);

} // namespace noctra
