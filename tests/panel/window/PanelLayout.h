#pragma once

#include <cmath>
#include <string>
#include <vector>

#include <QtGui/QFontMetricsF>

#include "tests/panel/window/PanelScene.h"
#include "tests/panel/window/PixelRuler.h"

namespace noctra {

inline constexpr Color deep = Color::grey(0.05);
inline constexpr Color grey = Color::grey(0.1);
inline const Color lit = over(grey, colors::white.withAlpha(0.05));

/// The panel's looks, measured in points. The scale factor is that of the environment.
struct PanelLayout : PanelScene {
    using Step = PixelRuler::Step;

    [[nodiscard]] static PixelRuler measure() {
        return {grab(), window()->effectiveDevicePixelRatio()};
    }
    [[nodiscard]] QFont font(const std::string& family, int size, int weight) const {
        QFont made(QString::fromStdString(family));
        made.setPixelSize(size);
        made.setHintingPreference(QFont::PreferNoHinting); // as the scene measures
        made.setWeight(static_cast<QFont::Weight>(weight));
        return made;
    }
    [[nodiscard]] QFont brand(int size) const {
        return font(fonts.find("Anybody-ExtraBold")->family, size, 800);
    }
    [[nodiscard]] double monospacedLine() const {
        return std::ceil(QFontMetricsF(font(fonts.fixedFamily(), 10, 700)).height());
    }
    [[nodiscard]] double presetHeight() const {
        const std::string family = fonts.find("Anybody-Bold")->family;
        return std::ceil(QFontMetricsF(font(family, 10, 700)).height()) + 20.0;
    }
    /// The footer's place where the status row is `row` points high.
    [[nodiscard]] double footerTop(double row) const {
        return 540.0 - (20.0 + row + 16.0 + presetHeight() + 16.0 + 54.0 + 20.0);
    }
};

/// At a share of the way down a gradient from white 10% to black 50% on `ground`.
inline Color bevelled(const Color& ground, double share) {
    const double light = 0.1 * (1.0 - share);
    const double alpha = 0.1 + 0.4 * share;
    const auto part = [&](double below) {
        return below * (1.0 - alpha) + light;
    };
    return {part(ground.red), part(ground.green), part(ground.blue)};
}

inline Color between(const Color& from, const Color& to, double share) {
    return over(from, to.withAlpha(share));
}

/// The share of a gaussian's weight between `from` and `to`, seen from `at`.
inline double gaussian(double at, double from, double to, double sigma) {
    const double unit = sigma * std::sqrt(2.0);
    return (std::erf((to - at) / unit) - std::erf((from - at) / unit)) / 2.0;
}

} // namespace noctra
