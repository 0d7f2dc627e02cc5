#pragma once

#include <vector>

#include <QtGui/QImage>

#include "foundation/Color.h"

namespace noctra {

/// Blurs masks, and gives them a colour. Lengths in device pixels. It keeps its buffers from one
/// call to the next.
class SoftShadow {
public:
    /// How far the blur with the standard deviation `sigma` reaches beyond what is blurred.
    [[nodiscard]] static int bleed(double sigma);

    /// Blurs `mask` (Format_Alpha8) in place, close to a gaussian of `sigma`; nothing comes in from
    /// beyond its edges.
    void blur(QImage& mask, double sigma);

    /// `mask` in `color`: valid until the next call.
    [[nodiscard]] const QImage& tinted(const QImage& mask, const Color& color);

private:
    std::vector<float> pixels_;
    std::vector<float> scratch_;
    QImage tinted_;
};

} // namespace noctra
