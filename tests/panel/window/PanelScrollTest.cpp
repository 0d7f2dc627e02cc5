// The panel in a popover that is less high than it. Distances for a window at scale factor 1.

#include <vector>

#include <QtTest/QTest>

#include "tests/panel/window/PanelScene.h"

namespace noctra {

namespace {

struct PanelScroll : PanelScene {
    static constexpr int shortest = 360;
    static constexpr QPoint ground{6, 200};

    /// How far down the panel is scrolled.
    [[nodiscard]] static double scrolled() { return 19.0 - box("gear").y(); }
    [[nodiscard]] static QPoint center(const QString& name) { return box(name).center().toPoint(); }
    /// Turns the wheel `notches` away from the user, one after the other.
    void turn(QPoint point, int notches) {
        for (int i = 0; i < std::abs(notches); ++i)
            wheel(point, notches < 0 ? -120 : 120);
    }
    /// Presses with a finger and draws it to `to` and off.
    void draw(QPoint from, QPoint to) {
        QTest::touchEvent(window(), finger_.get()).press(0, inWindow(from));
        settle();
        for (int step = 1; step <= 10; ++step) {
            QTest::touchEvent(window(), finger_.get())
                .move(0, inWindow(from + (to - from) * step / 10));
            settle();
        }
        QTest::touchEvent(window(), finger_.get()).release(0, inWindow(to));
        advance(Seconds(2));
    }

private:
    const std::unique_ptr<QPointingDevice> finger_{QTest::createTouchDevice()};
};

} // namespace

TEST_F(PanelScroll, WhatDoesNotFitIsReachedByWheelKeysAndIndicator) {
    for (const int height : {540, 476, shortest}) {
        SCOPED_TRACE(height);
        open(height);
        EXPECT_EQ(window()->geometry(), QRect(0, 0, 322, height + 2));
        EXPECT_EQ(find("indicator") != nullptr, height < 540);
        EXPECT_EQ(grab().pixelColor(314, 30) != grab().pixelColor(306, 30), height < 540);
        const double rest = 540 - height;
        EXPECT_EQ(scrolled(), 0.0);
        turn(ground, -1);
        EXPECT_EQ(scrolled(), std::min(48.0, rest));
        wheel(ground, 30);
        EXPECT_EQ(scrolled(), std::min(36.0, rest));
        turn(ground, -5);
        EXPECT_EQ(scrolled(), rest);
        turn(ground, 6);
        EXPECT_EQ(scrolled(), 0.0);
        for (const auto& [step, end] :
             std::vector<std::pair<Qt::Key, double>>{{Qt::Key_End, rest},
                                                     {Qt::Key_Home, 0.0},
                                                     {Qt::Key_PageDown, rest},
                                                     {Qt::Key_PageUp, 0.0}}) {
            key(step);
            EXPECT_EQ(scrolled(), end) << step;
        }
        if (height < 540) {
            press({314, 20});
            move({310, 20 + qRound(rest * height / 1080)});
            EXPECT_NEAR(scrolled(), rest / 2, 2.0) << "held by the indicator";
            move({200, 700});
            EXPECT_EQ(scrolled(), rest);
            release({200, 700});
            click(QPoint(314, 10));
            EXPECT_EQ(scrolled(), 0.0);
        }
        panel->close();
        settle();
    }
    EXPECT_EQ(engine.intensity, engine.brightness - 1.0) << "no fader has moved";
}

TEST_F(PanelScroll, TheControlThatTabGoesToIsInSight) {
    setControllable(true);
    open(shortest);
    key(Qt::Key_Tab);
    for (int step = 0; step < 10; ++step, key(Qt::Key_Tab)) {
        const QRectF shown = box(focused()).adjusted(-3, -3, 3, 3);
        EXPECT_TRUE(QRectF(0, 0, 320, shortest).contains(shown)) << focused().toStdString();
    }
    EXPECT_EQ(focused(), "BRIGHTNESS");
    const double before = scrolled();
    key(Qt::Key_Home);
    EXPECT_EQ(engine.brightness, 0.1) << "its keys stay the fader's";
    EXPECT_EQ(scrolled(), before);

    turn(ground, -9);
    click("power");
    EXPECT_EQ(scrolled(), 180.0) << "what is clicked stays where it is";
    key(Qt::Key_Tab);
    ASSERT_EQ(focused(), "gear");
    turn(ground, -1);
    key(Qt::Key_Return);
    advance(Seconds(0.1));
    key(Qt::Key_Tab); // while it still rises
    advance(Seconds(2));
    EXPECT_EQ(box("settings").y(), 0.0);
}

TEST_F(PanelScroll, TheWheelMovesAFaderThatHasTheFocusAndOnlyWhereItWasTurnedOverIt) {
    engine.intensity = 0.5;
    setBacklight(0.1F);
    open(shortest);
    const QPoint fader = center("WARMTH");
    turn(fader, -1);
    EXPECT_EQ(scrolled(), 48.0);
    EXPECT_EQ(engine.intensity, 0.5);
    turn(fader, 1);
    advance(Seconds(1));
    click(fader);
    turn(fader, -1);
    EXPECT_EQ(scrolled(), 0.0);
    EXPECT_DOUBLE_EQ(engine.intensity, 0.48);
    advance(Seconds(1));

    turn(ground, -9);
    move(center("pwmSafeWarning"));
    advance(Seconds(1));
    ASSERT_NE(find("pwmSafeTooltip"), nullptr);
    const QPoint over(60, qRound(box("pwmSafeTooltip").top()) + 8);
    turn(over, 9);
    EXPECT_EQ(scrolled(), 0.0) << "also with a fader under the pointer at last";
    EXPECT_DOUBLE_EQ(engine.intensity, 0.48);
    advance(Seconds(1));
    turn(fader, 1);
    EXPECT_DOUBLE_EQ(engine.intensity, 0.5);

    wheel(ground, -60);
    openSheet();
    turn(fader, -2);
    EXPECT_EQ(scrolled(), 96.0) << "from where the sheet begins";
    EXPECT_DOUBLE_EQ(engine.intensity, 0.5);
}

TEST_F(PanelScroll, AFingerScrollsMovesFadersAndPressesButtons) {
    engine.intensity = 0.5;
    for (const int height : {540, 400}) {
        SCOPED_TRACE(height);
        open(height);
        draw(ground, ground - QPoint(0, 120));
        EXPECT_EQ(scrolled() > 50.0, height < 540);
        key(Qt::Key_End);
        const double rest = scrolled();
        EXPECT_EQ(rest, 540 - height);
        const QPoint start = center("WARMTH");
        draw(start, start - QPoint(0, 40));
        EXPECT_NEAR(engine.intensity, 0.5 + 40.0 / slot(), 1e-9);
        EXPECT_EQ(scrolled(), rest);
        const QPoint button = center("power");
        draw(button, button - QPoint(0, -100));
        EXPECT_FALSE(engine.isEnabled) << "that was none";
        key(Qt::Key_End);
        draw(center("power"), center("power"));
        EXPECT_TRUE(engine.isEnabled);
        engine.isEnabled = false;
        engine.intensity = 0.5;
        panel->close();
        settle();
    }
}

} // namespace noctra
