#include "panel/quick/SoftShadow.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace noctra {

namespace {

constexpr int passes = 3;

/// A box whose two end pixels count in part, so that passes of it have exactly the variance of the
/// gaussian: P. Gwosdek et al., "Theoretical Foundations of Gaussian Convolution by Extended Box
/// Filtering", 2011.
struct ExtendedBox {
    int radius; ///< of the pixels that count in full, without the centre
    float end;  ///< the share of the two end pixels, below 1
};

ExtendedBox boxFor(double sigma) {
    const double variance = sigma * sigma / passes;
    const int radius = static_cast<int>((std::sqrt(1.0 + 12.0 * variance) - 1.0) / 2.0);
    const double full = radius * (radius + 1.0) / 3.0; // the variance of the full pixels alone
    const double end = (2.0 * radius + 1.0) * (variance - full) /
                       (2.0 * ((radius + 1.0) * (radius + 1.0) - variance));
    return {radius, static_cast<float>(std::clamp(end, 0.0, 1.0))};
}

/// Blurs each of `rows` rows of `length` pixels of `from` once; `step` pixels lie between one pixel
/// of the result and the next, and `turn` between its rows.
void boxRows(const float* from, float* to, int length, int rows, const ExtendedBox& box,
             std::ptrdiff_t step, std::ptrdiff_t turn) {
    const int radius = box.radius;
    const float share = 1.0F / (static_cast<float>(2 * radius + 1) + 2.0F * box.end);
    for (int row = 0; row < rows; ++row) {
        const float* in = from + static_cast<std::ptrdiff_t>(row) * length;
        float* out = to + row * turn;
        const auto at = [in, length](int i) {
            return i >= 0 && i < length ? in[i] : 0.0F;
        };
        double sum = 0.0; // of the pixels that count in full
        for (int i = 0; i < std::min(radius, length); ++i)
            sum += in[i];
        for (int i = 0; i < length; ++i) {
            sum += at(i + radius);
            const float ends = at(i - radius - 1) + at(i + radius + 1);
            out[i * step] = (static_cast<float>(sum) + box.end * ends) * share;
            sum -= at(i - radius);
        }
    }
}

} // namespace

int SoftShadow::bleed(double sigma) {
    return sigma > 0.0 ? passes * (boxFor(sigma).radius + 1) : 0;
}

void SoftShadow::blur(QImage& mask, double sigma) {
    if (!(sigma > 0.0) || mask.isNull())
        return;
    const int width = mask.width();
    const int height = mask.height();
    const ExtendedBox box = boxFor(sigma);
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    pixels_.resize(count);
    scratch_.resize(count);
    for (int y = 0; y < height; ++y)
        std::copy_n(mask.constScanLine(y), width,
                    pixels_.begin() + static_cast<std::ptrdiff_t>(y) * width);
    // The last pass over rows and the last over columns each turn the picture on its side.
    boxRows(pixels_.data(), scratch_.data(), width, height, box, 1, width);
    boxRows(scratch_.data(), pixels_.data(), width, height, box, 1, width);
    boxRows(pixels_.data(), scratch_.data(), width, height, box, height, 1);
    boxRows(scratch_.data(), pixels_.data(), height, width, box, 1, height);
    boxRows(pixels_.data(), scratch_.data(), height, width, box, 1, height);
    boxRows(scratch_.data(), pixels_.data(), height, width, box, width, 1);
    for (int y = 0; y < height; ++y)
        std::transform(pixels_.begin() + static_cast<std::ptrdiff_t>(y) * width,
                       pixels_.begin() + static_cast<std::ptrdiff_t>(y + 1) * width,
                       mask.scanLine(y), [](float alpha) {
                           return static_cast<std::uint8_t>(std::clamp(alpha + 0.5F, 0.0F, 255.0F));
                       });
}

const QImage& SoftShadow::tinted(const QImage& mask, const Color& color) {
    if (tinted_.size() != mask.size())
        tinted_ = QImage(mask.size(), QImage::Format_ARGB32_Premultiplied);
    std::array<QRgb, 256> premultiplied{};
    for (std::size_t i = 0; i < premultiplied.size(); ++i) {
        const double alpha = std::clamp(color.alpha, 0.0, 1.0) * static_cast<double>(i);
        const auto part = [alpha](double component) {
            return static_cast<int>(std::lround(std::clamp(component, 0.0, 1.0) * alpha));
        };
        premultiplied[i] = qRgba(part(color.red), part(color.green), part(color.blue),
                                 static_cast<int>(std::lround(alpha)));
    }
    for (int y = 0; y < mask.height(); ++y)
        std::transform(mask.constScanLine(y), mask.constScanLine(y) + mask.width(),
                       reinterpret_cast<QRgb*>(tinted_.scanLine(y)),
                       [&premultiplied](std::uint8_t alpha) { return premultiplied[alpha]; });
    return tinted_;
}

} // namespace noctra
