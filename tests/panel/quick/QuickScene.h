#pragma once

#include <memory>

#include <QtGui/QImage>
#include <QtQuick/QQuickWindow>
#include <QtTest/QTest>

#include <gtest/gtest.h>

namespace noctra {

/// A grey window and what is drawn in it, at the scale factor at which the program runs.
struct QuickScene : testing::Test {
    static constexpr int grey = 128;

    QQuickWindow window;
    QImage shot;

    QuickScene() {
        window.setColor(QColor(grey, grey, grey));
        window.resize(200, 260);
    }

    [[nodiscard]] double scale() const { return window.effectiveDevicePixelRatio(); }

    void draw() {
        if (!window.isVisible()) {
            window.show();
            ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        }
        shot = window.grabWindow();
        ASSERT_EQ(shot.width(), qRound(200 * scale()));
    }
    /// The pixel that covers a point of the window.
    [[nodiscard]] QColor at(double x, double y) const {
        return shot.pixelColor(static_cast<int>(x * scale()), static_cast<int>(y * scale()));
    }
};

/// That two colours are equal to within rounding.
inline testing::AssertionResult near(const QColor& color, double red, double green, double blue,
                                     double error = 1.5) {
    if (std::abs(color.red() - red) <= error && std::abs(color.green() - green) <= error &&
        std::abs(color.blue() - blue) <= error)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << color.name().toStdString() << " is not " << red << ", " << green << ", " << blue;
}
inline testing::AssertionResult near(const QColor& color, double level, double error = 1.5) {
    return near(color, level, level, level, error);
}

/// The share of a gaussian's weight that lies between `from` and `to`, seen from `at`.
inline double gaussianShare(double at, double from, double to, double sigma) {
    const double unit = sigma * std::sqrt(2.0);
    return (std::erf((to - at) / unit) - std::erf((from - at) / unit)) / 2.0;
}

} // namespace noctra
