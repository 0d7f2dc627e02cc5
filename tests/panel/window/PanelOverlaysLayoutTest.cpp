// What lies over the panel: the settings and the warning's tooltip.

#include "tests/panel/window/PanelLayout.h"

namespace noctra {

TEST_F(PanelLayout, TheSheetHasItsHeaderAndItsRows) {
    open();
    openSheet();
    const PixelRuler ruler = measure();
    const double line = std::ceil(QFontMetricsF(font(fonts.systemFamily(), 11, 700)).height());
    const double header = line + 32.0;
    const double first = header + 16.0;
    const double copy = first + 2.0 * 55.0;
    const double stop = copy + std::max(line, 14.0) + 32.0 + 1.0;
    const double end = stop + std::max(line, 14.0) + 32.0;
    const Color row = Color::grey(0.15);
    const Color upper = over(row, colors::white.withAlpha(0.05));
    const Color lower = over(row, colors::black.withAlpha(0.6));
    EXPECT_TRUE(ruler.row(2, {{0, Color::grey(0.12)}}, 320));
    EXPECT_TRUE(ruler.column(18,
                             {{header - 10, Color::grey(0.12)},
                              {header, deep},
                              {first, upper},
                              {first + 1, row},
                              {first + 53, lower},
                              {first + 54, deep},
                              {first + 55, upper},
                              {first + 56, row},
                              {first + 108, lower},
                              {first + 109, deep},
                              {copy, row},
                              {stop - 1, deep}},
                             340));
    EXPECT_TRUE(
        ruler.column(60, {{stop - 4, row}, {stop - 1, deep}, {stop, row}, {end, deep}}, end + 5));
    for (const double y : {first + 10.0, copy + 6.0})
        EXPECT_TRUE(ruler.row(y, {{0, deep}, {16, row}, {304, deep}}, 320)) << y;

    // As wide as what is in it, in the middle.
    const double across = stop + 6;
    const QRectF box = ruler.ink({17, across, 286, 2}, deep, row);
    EXPECT_TRUE(ruler.row(across, {{20, deep}, {box.left(), row}, {box.right(), deep}}, 300));
    EXPECT_NEAR(box.center().x(), 160.0, 0.8);
    const QRectF content = ruler.ink({20, stop + 4, 280, end - stop - 8}, row, {1, 0, 0});
    EXPECT_NEAR(content.left() - box.left(), 17.0, 1.2);
    EXPECT_NEAR(box.right() - content.right(), 17.0, 1.6);

    const QRectF title = ruler.ink({4, 4, 150, header - 8}, Color::grey(0.12), colors::white);
    EXPECT_NEAR(title.left(), 16.5, 1.0);
    EXPECT_NEAR(title.center().y(), header / 2, 1.8);
    const QRectF close = ruler.ink({200, 4, 116, header - 8}, Color::grey(0.12), {1, 0, 0});
    EXPECT_NEAR(close.right(), 303.5, 1.0);
    EXPECT_NEAR(close.center().y(), header / 2, 1.8);
    const QRectF label = ruler.ink({20, first + 4, 200, 46}, row, colors::white);
    EXPECT_NEAR(label.left(), 33.0, 1.2);
    EXPECT_NEAR(label.center().y(), first + 27, 1.8);
    const QRectF knob = ruler.ink({240, first + 4, 62, 46}, row, colors::white);
    EXPECT_NEAR(knob.center().y(), first + 27, 0.6);

    // The main panel shows through, but only faintly: the power switch's grey.
    EXPECT_LE(distance(ruler.at(40, 493), deep), 2.0);
    engine.isEnabled = true;
    settle();
    EXPECT_TRUE(measure().shows(40, 493, over({0.7, 0, 0}, deep.withAlpha(0.98)), 1.6));
}

TEST_F(PanelLayout, AWarningHasItsTooltipAboveIt) {
    setBacklight(0.1F);
    open();
    const QRectF warning = box("pwmSafeWarning");
    move(warning.center().toPoint());
    advance(Seconds(1));
    const PixelRuler ruler = measure();
    const double line = monospacedLine();
    EXPECT_EQ(warning, QRectF(24, footerTop(2 * line) + 15, 272, 2 * line));
    const QRectF text = ruler.ink(warning, grey, colors::systemRed);
    EXPECT_NEAR(text.center().x(), 160.0, 1.5);

    const double bottom = warning.top() - 10.0;
    const double regular = std::ceil(QFontMetricsF(font(fonts.fixedFamily(), 10, 400)).height());
    const double top = bottom - (4.0 + 16.0 + 4.0 * regular + 3.0 * 3.0 + 16.0);
    const Color outline = over(colors::black, colors::systemYellow.withAlpha(0.35));
    EXPECT_TRUE(ruler.column(36,
                             {{top, colors::systemYellow},
                              {top + 4, colors::black},
                              {bottom - std::ceil(ruler.edge(1) / 2.0) / ruler.scale(), outline}},
                             (ruler.edge(top) + ruler.edge(bottom - top)) / ruler.scale()));
    const std::vector<Step> across = ruler.box(30, 290, {deep, deep, outline, colors::black});
    const auto within = across.begin() + (across.size() > 5 ? 2 : 1);
    EXPECT_TRUE(ruler.row(top + 8, {within, within + 3}, 290));
    EXPECT_TRUE(ruler.row(top + 2, {{30, colors::systemYellow}}, 290));

    // The lines are 3 points apart, and 16 points are left above the first and below the last.
    const QFontMetricsF metrics(font(fonts.fixedFamily(), 10, 400));
    const QRectF advice =
        ruler.ink({32, top + 5, 250, bottom - top - 8}, colors::black, Color::grey(0.92));
    EXPECT_NEAR(advice.left(), 47.0, 1.2);
    EXPECT_NEAR(advice.top(), top + 20 + metrics.ascent() - metrics.capHeight(), 1.3);
    EXPECT_NEAR(advice.bottom(), bottom - 16 - metrics.descent(), 1.3);

    // The light one is seen at the sides, and the dark one more below than above.
    for (const double x : {22.0, 298.0}) {
        const QColor glow = ruler.at(x, (top + bottom) / 2);
        EXPECT_GT(glow.red(), glow.blue() + 4) << x;
        EXPECT_NEAR(glow.red(), glow.green() * 255.0 / 214.0, 6);
    }
    EXPECT_NEAR(ruler.at(22, top + 40).red(), ruler.at(297.99, top + 40).red(), 1);
    for (const double x : {60.0, 200.0}) {
        const double y = bottom + 6.5;
        const double dark = 0.7 * gaussian(x, 30, 290, 14) * gaussian(y, top + 6, bottom + 6, 14);
        const double blue = ruler.at(x, y).blueF();
        EXPECT_LT(blue, 0.1 * (1.0 - dark) + 0.005) << x;
        EXPECT_GT(blue, 0.1 * (1.0 - dark) * (1.0 - 0.18) - 0.005) << x;
    }
}

} // namespace noctra
