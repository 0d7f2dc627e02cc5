// What the controls in the bottom band look like.

#include "tests/panel/window/PanelLayout.h"

namespace noctra {

TEST_F(PanelLayout, ThePresetsAreThreeBoxesThatShowWhichOneIsActive) {
    engine.intensity = 1.0 - 2700.0 / 6500.0;
    open();
    const PixelRuler ruler = measure();
    const double height = presetHeight();
    const double top = 540.0 - 20.0 - 54.0 - 16.0 - height;
    const double width = (272.0 - 24.0) / 3.0;
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const bool active = i == 1;
        const double left = 24.0 + i * (width + 12.0);
        const auto fill = [&](double y) {
            const double share = (y - top) / height;
            return active ? between(Color::grey(0.25), Color::grey(0.2), share)
                          : between(Color::grey(0.12), Color::grey(0.08), share);
        };
        for (const double down : {3.0, 8.0, height / 2, height - 3.0})
            EXPECT_TRUE(ruler.shows(left + 6, top + down, fill(top + down + 0.25), 2.1)) << down;
        // The stroke and what is within; beyond it the shadow darkens.
        const double y = top + height / 2;
        const Color stroke = bevelled(fill(y), 0.5);
        EXPECT_TRUE(
            ruler.row(y, {{left + 0.5 / ruler.scale(), stroke}, {left + 1, fill(y)}}, left + 6) ||
            ruler.row(y, {{left + 0.5 / ruler.scale(), stroke}, {left + 0.5, fill(y)}}, left + 6));
        EXPECT_LT(ruler.at(left - 1.6, y).redF(), 0.095F);
        EXPECT_LT(ruler.at(left + width + 1.6, y).redF(), 0.095F);
        EXPECT_TRUE(ruler.shows(left - 5.9, y - 10, grey, 2)) << "between the boxes";
        const Color ink = active ? colors::white : colors::systemGrey;
        const QRectF label = ruler.ink({left + 4, top + 4, width - 8, height - 8}, fill(y), ink);
        EXPECT_NEAR(label.center().x(), left + width / 2, 1.0);
        EXPECT_NEAR(label.center().y(), top + height / 2, 1.3);
    }
}

TEST_F(PanelLayout, TheSwitchIsGreyOrRedAndGlows) {
    for (const bool on : {false, true}) {
        SCOPED_TRACE(on);
        engine.isEnabled = on;
        open();
        settle();
        const PixelRuler ruler = measure();
        const Color top = on ? Color{0.8, 0.0, 0.0} : Color::grey(0.15);
        const Color bottom = on ? Color{0.6, 0.0, 0.0} : Color::grey(0.1);
        for (const double y : {469.0, 480.0, 493.0, 510.0, 517.0})
            EXPECT_TRUE(ruler.shows(40, y, between(top, bottom, (y + 0.25 - 466) / 54), 2.1)) << y;
        const double row = ruler.after(474);
        const double share = (row - ruler.edge(466) / ruler.scale()) / 54.0;
        const Color fill = between(top, bottom, share);
        const double light = (on ? 0.3 : 0.1) * (1.0 - share);
        const Color edge = over(fill, colors::black.withAlpha(light + 0.5 * share));
        const Color stroke{edge.red + light, edge.green + light, edge.blue + light};
        EXPECT_TRUE(ruler.row(row, {{24, stroke}, {25, fill}}, 60));
        EXPECT_TRUE(ruler.row(row, {{250, fill}, {295, stroke}}, 296));
        EXPECT_TRUE(ruler.shows(100, ruler.after(466),
                                over(top, colors::white.withAlpha(on ? 0.3 : 0.1)), 4));

        const Color ink = on ? colors::white : colors::systemGrey;
        const QRectF content = ruler.ink({60, 470, 200, 46}, between(top, bottom, 0.5), ink);
        EXPECT_NEAR(content.center().x(), 160.0, 2.0);
        EXPECT_NEAR(content.center().y(), 493.0, 2.0);
        EXPECT_LE(content.height(), 22.0);

        const Color shadow = on ? colors::systemRed.withAlpha(0.4) : colors::black.withAlpha(0.5);
        const double sigma = on ? 10.0 : 2.0;
        const double down = on ? 0.0 : 2.0;
        for (const auto& [x, y] :
             std::vector<QPointF>{{22.5, 493.5}, {14.5, 493.5}, {160.5, 522.5}, {160.5, 530.5}}) {
            const double cover =
                gaussian(x, 24, 296, sigma) * gaussian(y, 466 + down, 520 + down, sigma);
            EXPECT_TRUE(ruler.shows(x, y, over(grey, shadow.withAlpha(shadow.alpha * cover)), 4));
        }
        panel->close();
        settle();
    }
}

TEST_F(PanelLayout, TheBarHasItsOutlineItsDotAndItsWord) {
    setControllable(true);
    open();
    const double line = monospacedLine();
    const double height = line + 18.0;
    const double top = footerTop(height) + 20.0 - 5.0;
    const Color fill = over(grey, colors::black.withAlpha(0.45));
    const Color green{0.0, 1.0, 0.4};
    const auto check = [&](const Color& outline, const Color& dot, const Color& label,
                           const Color& word) {
        const PixelRuler ruler = measure();
        const PixelRuler::Stroke stroke{grey, over(grey, outline), over(fill, outline), fill};
        EXPECT_TRUE(ruler.row(top + 2, ruler.box(24, 296, stroke), 300));
        EXPECT_TRUE(ruler.column(160, ruler.box(top, top + height, stroke), top + height + 5));
        const double middle = top + height / 2;
        const QRectF round = ruler.ink({25, top + 2, 22, height - 4}, fill, over(fill, dot));
        EXPECT_NEAR(round.left(), 34.0, 1.01 / ruler.scale());
        EXPECT_NEAR(round.width(), 8.0, 1.01 / ruler.scale());
        EXPECT_NEAR(round.height(), 8.0, 1.01 / ruler.scale());
        EXPECT_NEAR(round.center().y(), middle, 0.8);
        const QRectF name = ruler.ink({48, top + 2, 120, height - 4}, fill, over(fill, label));
        EXPECT_NEAR(name.left(), 51.0, 1.0);
        QFont tracked = font(fonts.fixedFamily(), 10, 700);
        tracked.setLetterSpacing(QFont::AbsoluteSpacing, 0.8);
        const QRectF tight = QFontMetricsF(tracked).tightBoundingRect("PWM-SAFE MODE");
        EXPECT_NEAR(name.width(), tight.width() - 1.5, 1.6);
        EXPECT_NEAR(name.center().y(), middle, 1.8);
        // Three dots are too small to have a pixel of their colour.
        const QRectF state =
            ruler.ink({200, top + 2, 94, height - 4}, fill, over(fill, word), 60.0);
        EXPECT_NEAR(state.right(), 284.0, 1.5);
        // 1.5 points beside the dot its glow is still seen, at 12 points no more.
        EXPECT_GT(distance(ruler.at(32.4, middle), fill), dot.alpha < 1.0 ? 0.9 : 20.0);
        EXPECT_TRUE(ruler.shows(38, middle + 13, fill, 3));
    };
    check(colors::white.withAlpha(0.08), colors::white.withAlpha(0.25),
          colors::white.withAlpha(0.5), colors::white.withAlpha(0.4));
    click("pwmSafeBar");
    advance(Seconds(0.3));
    check(colors::systemYellow.withAlpha(0.4), colors::systemYellow, colors::white.withAlpha(0.95),
          colors::systemYellow);
    advance(Seconds(1));
    check(green.withAlpha(0.4), green, colors::white.withAlpha(0.95), green);
}

} // namespace noctra
