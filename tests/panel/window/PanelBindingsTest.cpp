// What the engine and the controller say, as it comes to be seen. Colours by their places in a
// window at scale factor 1.

#include <cmath>
#include <vector>

#include "panel/CubicBezier.h"
#include "tests/panel/window/Colours.h"
#include "tests/panel/window/DampedOscillator.h"
#include "tests/panel/window/PanelScene.h"

namespace noctra {

namespace {

struct PanelBindings : PanelScene {
    [[nodiscard]] static QColor at(int x, int y) { return grab().pixelColor(x, y); }
    /// The power switch's colour at its left, in the middle of its height.
    [[nodiscard]] static QColor power() { return at(40, 493); }
    /// What it is at `level`, from 0 (off) to 1 (on).
    static Color powerAt(double level) {
        const auto mixed = [level](double off, double on) {
            return std::clamp(off + (on - off) * level, 0.0, 1.0);
        };
        const double share = 27.5 / 54.0;
        const double grey = mixed(0.15, 0.0) * (1 - share) + mixed(0.1, 0.0) * share;
        return {mixed(0.15, 0.8) * (1 - share) + mixed(0.1, 0.6) * share, grey, grey};
    }
    /// The fill of the preset's box, in the middle of its height.
    [[nodiscard]] static QColor preset(const QString& name) {
        return at(qRound(box(name).left()) + 8, qRound(box(name).center().y()));
    }
    /// The place of the cap's middle above value 0, as a share of the slot.
    [[nodiscard]] static double cap(const QString& fader) {
        static_cast<void>(grab()); // a frame puts it where it belongs
        const QQuickItem& item = PanelScene::item(fader);
        const QQuickItem* picture = item.childItems().at(2);
        // Its shadow, 6 points of blur and 4 downwards, is a part of the picture.
        const double middle = picture->y() + picture->height() / 2 - 4.0;
        return (item.height() - 20.0 - 6.0 - middle) / slot();
    }
    /// What rounding to whole pixels may do to it.
    static constexpr double pixel = 0.0045;

    /// How much is seen of the text; 0 where it is not there.
    [[nodiscard]] static double opacityOf(const QString& text,
                                          const QQuickItem* in = window()->contentItem()) {
        if (in->property("text").toString() == text)
            return in->opacity();
        double most = 0.0;
        for (const QQuickItem* child : in->childItems())
            most = std::max(most, opacityOf(text, child));
        return most * in->opacity();
    }
};

} // namespace

TEST_F(PanelBindings, WordsCrossFadeWhereTheirChangesAnimate) {
    setControllable(true);
    open();
    const auto expectFade = [this](const char* before, const char* after, double time) {
        EXPECT_EQ(opacityOf(before), 1.0);
        EXPECT_EQ(opacityOf(after), 0.0);
        advance(Seconds(time / 2));
        EXPECT_NEAR(opacityOf(before), 0.5, 0.06);
        EXPECT_NEAR(opacityOf(after), 0.5, 0.06);
        advance(Seconds(time / 2));
        EXPECT_EQ(opacityOf(before), 0.0);
        EXPECT_EQ(opacityOf(after), 1.0);
    };
    click("pwmSafeBar");
    expectFade("OFF", "...", 0.16);
    openSheet();
    click("copy");
    expectFade("COPY DIAGNOSTICS", "COPIED DIAGNOSTICS", 0.2);
}

TEST_F(PanelBindings, NothingMovesUnderReducedMotion) {
    desktop.motion.reduced = true;
    engine.intensity = 0.0;
    setBacklight(0.1F);
    open();
    click("NIGHT");
    EXPECT_LE(distance(power(), powerAt(1.0)), 1.6);
    EXPECT_LE(distance(preset("NIGHT"), Color::grey(0.225)), 2.0);
    EXPECT_NEAR(cap("WARMTH"), 1.0, pixel);
    click("power");
    EXPECT_LE(distance(power(), powerAt(0.0)), 1.6);

    move(box("pwmSafeWarning").center().toPoint());
    desktop.advance(Seconds(0.5));
    settle();
    EXPECT_EQ(item("pwmSafeTooltip").opacity(), 1.0);
    EXPECT_EQ(box("pwmSafeTooltip").bottom(), box("pwmSafeWarning").top() - 10.0);
    setBacklight(1.0F);
    settle();
    EXPECT_EQ(find("pwmSafeTooltip"), nullptr);
    EXPECT_EQ(item("pwmSafeWarning").opacity(), 0.0);

    click("gear");
    EXPECT_EQ(box("settings").y(), 0.0);
    click("ALLOW EXTREME DIM");
    const QRectF row = box("ALLOW EXTREME DIM");
    EXPECT_LE(distance(at(254, qRound(row.center().y())), colors::systemRed), 2.0);
    click("copy");
    EXPECT_EQ(opacityOf("COPIED DIAGNOSTICS"), 1.0);
    click("close");
    EXPECT_EQ(find("settings"), nullptr);
}

} // namespace noctra
