// What the panel's bands look like.

#include "tests/panel/window/PanelLayout.h"

namespace noctra {

TEST_F(PanelLayout, TheBandsHaveTheirHeightsColoursAndBevels) {
    open();
    const PixelRuler ruler = measure();
    const QImage picture = grab();
    EXPECT_EQ(picture.size(), QSize(ruler.edge(320), ruler.edge(540)));
    const double footer = footerTop(2.0 * monospacedLine());
    EXPECT_TRUE(ruler.column(5,
                             {{0, lit},
                              {1, grey},
                              {53, over(grey, colors::black.withAlpha(0.8))},
                              {54, deep}, // and the footer's upper line, black 50%, is as dark
                              {footer + 1, grey},
                              {539, lit}},
                             540));
    for (const double y : {0.5, 20.0, 40.0, 539.5})
        EXPECT_TRUE(ruler.row(y, {{0, y < 1 || y > 539 ? lit : grey}}, 20)) << y;

    const Color groove = colors::black;
    EXPECT_TRUE(ruler.row(footer - 60,
                          {{154, deep},
                           {159, groove},
                           {160, over(groove, colors::white.withAlpha(0.05))},
                           {161, over(deep, colors::white.withAlpha(0.05))},
                           {162, deep}},
                          166));
    EXPECT_TRUE(ruler.column(159.9, {{60, deep}, {98, groove}, {footer - 44, deep}}, footer - 5));
}

TEST_F(PanelLayout, TheHeaderHasItsTitleAndItsGear) {
    open();
    const PixelRuler ruler = measure();
    const Color faint = over(grey, colors::white.withAlpha(0.3));
    const QRectF title = ruler.ink({10, 5, 200, 44}, grey, faint);
    EXPECT_NEAR(title.left(), 24.5, 1.0);
    EXPECT_NEAR(title.center().y(), 27.0, 1.0);
    QFont titleFont = brand(11);
    titleFont.setLetterSpacing(QFont::AbsoluteSpacing, 1.5);
    const QRectF tight = QFontMetricsF(titleFont).tightBoundingRect("NOCTRA");
    EXPECT_NEAR(title.width(), tight.width() - 1.5, 2.6) << "that one is of whole points";
    EXPECT_NEAR(title.height(), QFontMetricsF(titleFont).capHeight(), 1.2);
    EXPECT_TRUE(ruler.shows(287, 23, faint)) << "the gear";
    const QRectF gear = ruler.ink({240, 5, 75, 44}, grey, faint);
    EXPECT_NEAR(gear.right(), 295.5, 1.1);
    EXPECT_NEAR(gear.center().y(), 27.0, 0.6);
    EXPECT_NEAR(gear.width(), 15.0, 1.1);
}

TEST_F(PanelLayout, TheFaderColumnsHaveTheirLabelsMarksAndReadouts) {
    engine.intensity = 0.0;
    engine.brightness = 0.5;
    open();
    const PixelRuler ruler = measure();
    const double bottom = footerTop(2.0 * monospacedLine()) - 24.0;
    const Color mark = over(deep, colors::white.withAlpha(0.4));
    struct Column {
        double left;
        Color color;
        double field;
    };
    for (const auto& [left, color, field] :
         std::vector<Column>{{16, {1, 0, 0}, 84}, {163, colors::white, 64}}) {
        SCOPED_TRACE(left);
        const double middle = left + 70.5;
        const QFontMetricsF metrics(brand(14));
        const QRectF label = ruler.ink({left, 56, 140, 45}, deep, color);
        EXPECT_NEAR(label.center().x(), middle, 1.0);
        EXPECT_NEAR(label.bottom(), 76.0 + metrics.ascent(), 1.0) << "2 points above its place";
        EXPECT_NEAR(label.height(), metrics.capHeight(), 1.2);

        // The slot ends 20 points above the lower edge of the view, 16 above the field.
        const double zero = bottom - 24 - 16 - 20;
        EXPECT_TRUE(
            ruler.row(zero, {{left + 1, deep}, {left + 8, mark}, {left + 28, deep}}, left + 38));
        EXPECT_TRUE(ruler.row(zero, {{left + 103, deep}, {left + 113, mark}, {left + 133, deep}},
                              left + 140));
        EXPECT_TRUE(ruler.column(left + 12, {{zero - 8, deep}, {zero - 1, mark}, {zero + 1, deep}},
                                 zero + 10));
        const double top = 78.0 + std::ceil(metrics.height()) + 16.0 + 20.0;
        EXPECT_TRUE(
            ruler.column(left + 12, {{top - 8, deep}, {top - 1, mark}, {top + 1, deep}}, top + 5));
        if (left < 20)
            EXPECT_TRUE(ruler.shows(middle, zero - 100, Color::grey(0.12))) << "an empty slot";
        else
            EXPECT_TRUE(ruler.shows(middle, zero - 20,
                                    over(Color::grey(0.12), colors::white.withAlpha(0.1))));

        const Color outline = colors::white.withAlpha(0.1);
        const PixelRuler::Stroke stroke{deep, over(deep, outline), over(colors::black, outline),
                                        colors::black};
        const double first = middle - field / 2;
        EXPECT_TRUE(ruler.column(first + 5, ruler.box(bottom - 24, bottom, stroke), bottom + 5));
        const std::vector<Step> across = ruler.box(first, first + field, stroke);
        const auto inside = across.begin() + (across.size() > 5 ? 4 : 3);
        EXPECT_TRUE(ruler.row(bottom - 7, {across.begin(), inside}, first + 6));
        std::vector<Step> end(inside - 1, across.end());
        end[0].start = first + field - 6;
        EXPECT_TRUE(ruler.row(bottom - 7, end, first + field + 3));
    }
}

TEST_F(PanelLayout, ScrolledItLooksAsItDoesInFull) {
    engine.intensity = 0.4;
    open();
    const QImage full = grab();
    const double scale = window()->effectiveDevicePixelRatio();
    panel->close();
    settle();
    open(400);
    wheel({6, 200}, -29); // 11.6 points, which end between two pixels
    const QImage part = grab();
    const int down = qRound(11.6 * scale);
    int others = 0; // an edge in the middle of a pixel may go either way, and letters with it
    for (int y = 0; y < part.height(); ++y)
        for (int x = 0; x < qRound(306 * scale); ++x)
            others += part.pixel(x, y) != full.pixel(x, y + down) ? 1 : 0;
    EXPECT_LT(others, part.width() * part.height() * 0.003);
}

} // namespace noctra
