#include "panel/quick/LayerBoxes.h"

#include <cstddef>

namespace noctra {

namespace {

/// Pixels count downwards.
std::optional<LayerGradient> fromTheTop(std::optional<LayerGradient> gradient) {
    if (gradient)
        for (double& location : gradient->locations)
            location = 1.0 - location;
    return gradient;
}

} // namespace

QRect pixelsOf(const Rect& frame, const PixelGrid& grid, int height) {
    const int tall = grid.length(frame.height);
    return {grid.edge(frame.x), height - grid.edge(frame.y) - tall, grid.length(frame.width), tall};
}

void appendBoxes(const Layer& layer, const QRect& pixels, const PixelGrid& grid,
                 std::vector<PixelBox>& boxes) {
    const LayerLooks& looks = layer.looks();
    const std::size_t shadow = boxes.size();
    const bool casts = looks.shadowOpacity > 0.0;
    if (casts)
        boxes.push_back(
            {.kind = PixelBox::Kind::shadow,
             .color = looks.shadowColor.withAlpha(looks.shadowColor.alpha * looks.shadowOpacity),
             .first = shadow + 1,
             .sigma = looks.shadowRadius * grid.scale,
             .offset = {grid.edge(looks.shadowOffsetX), -grid.edge(looks.shadowOffsetY)}});
    const double radius = looks.cornerRadius * grid.scale;
    if (!pixels.isEmpty() && (looks.gradient || looks.backgroundColor.alpha > 0.0))
        boxes.push_back({.kind = PixelBox::Kind::fill,
                         .color = looks.backgroundColor,
                         .gradient = fromTheTop(looks.gradient),
                         .rect = pixels,
                         .radius = radius});
    for (const auto& sublayer : layer.sublayers())
        appendBoxes(*sublayer,
                    pixelsOf(sublayer->frame(), grid, pixels.height()).translated(pixels.topLeft()),
                    grid, boxes);
    if (!pixels.isEmpty() && looks.borderWidth > 0.0)
        boxes.push_back({.kind = PixelBox::Kind::border,
                         .color = looks.borderColor,
                         .rect = pixels,
                         .radius = radius,
                         .width = grid.length(looks.borderWidth)});
    if (casts)
        boxes[shadow].last = boxes.size();
}

} // namespace noctra
