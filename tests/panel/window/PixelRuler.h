#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <QtCore/QRectF>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <gtest/gtest.h>

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

inline double distance(const QColor& a, const Color& b) {
    return 255.0 * std::max({std::abs(a.redF() - b.red), std::abs(a.greenF() - b.green),
                             std::abs(a.blueF() - b.blue)});
}

/// Measures a picture of the window in points.
class PixelRuler {
public:
    /// Along a row or a column: from `start` on there is `color`.
    struct Step {
        double start;
        Color color;
    };

    PixelRuler(QImage picture, double scale) : picture_(std::move(picture)), scale_(scale) {}

    [[nodiscard]] double scale() const { return scale_; }
    [[nodiscard]] int edge(double points) const {
        return static_cast<int>(std::floor(points * scale_ + 0.5));
    }
    /// The middle of the first pixel after an edge.
    [[nodiscard]] double after(double points) const { return (edge(points) + 0.5) / scale_; }
    [[nodiscard]] bool isFractional() const { return scale_ != std::round(scale_); }
    [[nodiscard]] QColor at(double x, double y) const {
        return picture_.pixelColor(static_cast<int>(x * scale_), static_cast<int>(y * scale_));
    }
    [[nodiscard]] testing::AssertionResult shows(double x, double y, const Color& color,
                                                 double error = 1.6) const {
        if (distance(at(x, y), color) <= error)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << at(x, y).name().toStdString() << " at " << x << ", "
                                           << y << " is not " << text(color);
    }

    /// That the row at `y` is made of `steps` up to `end`, with nothing between one colour and the
    /// next. Where the scale factor is a fraction an edge may be the neighbouring pixel's.
    [[nodiscard]] testing::AssertionResult row(double y, const std::vector<Step>& steps,
                                               double end) const {
        return line(steps, end, [this, y](int x) {
            return picture_.pixelColor(x, static_cast<int>(y * scale_));
        });
    }
    [[nodiscard]] testing::AssertionResult column(double x, const std::vector<Step>& steps,
                                                  double end) const {
        return line(steps, end, [this, x](int y) {
            return picture_.pixelColor(static_cast<int>(x * scale_), y);
        });
    }

    /// The stroke that is one point wide and lies on an edge: `outer` of it beyond, if there is a
    /// whole pixel for that, and `inner` within.
    struct Stroke {
        Color outside;
        Color outer;
        Color inner;
        Color inside;
    };
    /// From a little before `first` to a little after `last`, where the two edges are.
    [[nodiscard]] std::vector<Step> box(double first, double last, const Stroke& stroke) const {
        const double width = std::max(1, edge(1.0));
        const double beyond = std::floor(width / 2.0) / scale_;
        const double within = (width - std::floor(width / 2.0)) / scale_;
        std::vector<Step> steps{{first - 3.0, stroke.outside}};
        if (beyond > 0.0)
            steps.push_back({first - beyond, stroke.outer});
        steps.insert(steps.end(), {{first, stroke.inner},
                                   {first + within, stroke.inside},
                                   {last - within, stroke.inner}});
        if (beyond > 0.0)
            steps.push_back({last, stroke.outer});
        steps.push_back({last + beyond, stroke.outside});
        return steps;
    }

    /// The bounds of what in `area` is nearer to `ink` than to `ground`, in points. Fails where
    /// nothing comes close to `ink`, as the thickest strokes of a text do.
    [[nodiscard]] QRectF ink(const QRectF& area, const Color& ground, const Color& ink,
                             double error = 10.0) const {
        QRect found;
        double nearest = 255.0;
        for (int y = edge(area.top()); y < edge(area.bottom()); ++y)
            for (int x = edge(area.left()); x < edge(area.right()); ++x) {
                const QColor color = picture_.pixelColor(x, y);
                nearest = std::min(nearest, distance(color, ink));
                if (distance(color, ink) < distance(color, ground))
                    found |= QRect(x, y, 1, 1);
            }
        EXPECT_LE(nearest, error) << text(ink);
        return {found.x() / scale_, found.y() / scale_, found.width() / scale_,
                found.height() / scale_};
    }

    static std::string text(const Color& color) {
        return std::to_string(color.red * 255.0) + ", " + std::to_string(color.green * 255.0) +
               ", " + std::to_string(color.blue * 255.0);
    }

private:
    template <typename Pixel>
    testing::AssertionResult line(const std::vector<Step>& steps, double end, Pixel pixel) const {
        const int slack = isFractional() ? 1 : 0;
        std::size_t step = 0;
        for (int i = edge(steps[0].start); i < edge(end); ++i) {
            const QColor color = pixel(i);
            const bool follows =
                step + 1 < steps.size() && i >= edge(steps[step + 1].start) - slack;
            const bool isLate = follows && i >= edge(steps[step + 1].start) + slack;
            if (!isLate && distance(color, steps[step].color) <= tolerance)
                continue;
            if (follows && distance(color, steps[step + 1].color) <= tolerance) {
                ++step;
                continue;
            }
            return testing::AssertionFailure()
                   << color.name().toStdString() << " at " << i / scale_ << " is not "
                   << text(steps[follows ? step + 1 : step].color);
        }
        if (step + 1 != steps.size())
            return testing::AssertionFailure() << "nothing at " << steps[step + 1].start;
        return testing::AssertionSuccess();
    }

    static constexpr double tolerance = 1.6;
    const QImage picture_;
    const double scale_;
};

} // namespace noctra
