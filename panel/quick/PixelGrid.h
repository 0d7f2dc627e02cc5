#pragma once

#include <algorithm>
#include <cmath>

#include <QtCore/QPointF>
#include <QtCore/QRect>
#include <QtCore/QSizeF>

namespace noctra {

/// The window's device pixels as an item sees them. Its pixel (0, 0) is the one nearest to the
/// item's top-left corner, so that what is placed on the grid does not depend on where the item is.
struct PixelGrid {
    double scale = 1.0; ///< device pixels to a point
    QPointF corner;     ///< of pixel (0, 0), in the item's coordinates

    friend bool operator==(const PixelGrid& a, const PixelGrid& b) {
        return a.scale == b.scale && a.corner.x() == b.corner.x() && a.corner.y() == b.corner.y();
    }

    /// The pixel edge nearest to `points`.
    [[nodiscard]] int edge(double points) const {
        return static_cast<int>(std::floor(points * scale + 0.5));
    }
    /// A length in whole pixels, at least one where there is any.
    [[nodiscard]] int length(double points) const {
        return points > 0.0 ? std::max(1, edge(points)) : 0;
    }
    /// An item's own box.
    [[nodiscard]] QRect box(const QSizeF& size) const {
        return {0, 0, length(size.width()), length(size.height())};
    }

    [[nodiscard]] QPointF position(const QPoint& pixel) const {
        return corner + QPointF(pixel.x() / scale, pixel.y() / scale);
    }
    [[nodiscard]] QSizeF size(const QSize& pixels) const {
        return {pixels.width() / scale, pixels.height() / scale};
    }
};

} // namespace noctra
