#pragma once

#include <algorithm>
#include <cmath>

#include <QtGui/QColor>

#include "foundation/Color.h"

namespace noctra {

/// `color` as it looks on `ground`, which is opaque.
inline Color over(const Color& ground, const Color& color) {
    const auto mixed = [&](double below, double above) {
        return below + (above - below) * color.alpha;
    };
    return {mixed(ground.red, color.red), mixed(ground.green, color.green),
            mixed(ground.blue, color.blue)};
}

/// The greatest difference of a channel, of 255.
inline double distance(const QColor& a, const Color& b) {
    return 255.0 * std::max({std::abs(a.redF() - b.red), std::abs(a.greenF() - b.green),
                             std::abs(a.blueF() - b.blue)});
}

} // namespace noctra
