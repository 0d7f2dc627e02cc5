// The settings sheet: how it moves, and what it leaves alone.

#include <vector>

#include <QtCore/QPointer>
#include <QtQml/QQmlProperty>
#include <QtTest/QTest>

#include "tests/panel/window/DampedOscillator.h"
#include "tests/panel/window/PanelScene.h"

namespace noctra {

namespace {

struct PanelSheet : PanelScene {
    static constexpr DampedOscillator spring{0.35, 0.8};

    /// How far the sheet is below its place, as a share of the panel's height.
    [[nodiscard]] static double below() { return box("settings").y() / 540.0; }
};

} // namespace

TEST_F(PanelSheet, SlidesInAndOutLikeADampedSpringAndIsGoneThen) {
    open();
    for (const bool opens : {true, false}) {
        click(opens ? "gear" : "close");
        double passed = 0.0;
        for (const double time : {0.0, 0.02, 0.05, 0.1, 0.15, 0.2, 0.3, 0.4}) {
            advance(Seconds(time - passed));
            passed = time;
            const double offset = spring.offset(time, 1.0, 0.0);
            EXPECT_NEAR(below(), opens ? offset : 1.0 - offset, 1e-9) << opens << ' ' << time;
            if (below() < 0) {
                EXPECT_LT(grab().pixelColor(160, 538).red(), 15) << "no footer beneath it";
            }
        }
        if (opens) {
            advance(Seconds(1));
            EXPECT_EQ(below(), 0.0);
        }
    }
    const QPointer<QQuickItem> sheet = &item("settings");
    advance(Seconds(1));
    EXPECT_TRUE(sheet.isNull());
}

TEST_F(PanelSheet, IsThereAgainWhereItWasWithTheNextWindow) {
    open(360);
    openSheet();
    wheel({160, 300}, -120);
    const double scrolled = box("settings").y();
    EXPECT_EQ(scrolled, -48.0);
    for (const int height : {360, 540}) { // the desktop has changed meanwhile
        panel->close();
        settle();
        open(height);
        EXPECT_EQ(sheetLevel(), 1.0) << height;
        EXPECT_EQ(box("settings").y(), height == 360 ? scrolled : 0.0) << height;
    }
    click("close");
    advance(Seconds(2));
    panel->close();
    settle();
    open();
    EXPECT_EQ(find("settings"), nullptr);
}

TEST_F(PanelSheet, TurnsRoundOnTheWayWithItsSpeed) {
    open();
    click("gear");
    advance(Seconds(0.1));
    const double offset = spring.offset(0.1, 1.0, 0.0);
    const double speed = spring.speed(0.1, 1.0, 0.0);
    key(Qt::Key_Escape);
    for (int step = 1; step <= 15; ++step) {
        advance(Seconds(0.02));
        EXPECT_NEAR(below(), 1.0 + spring.offset(step * 0.02, offset - 1.0, speed), 1e-6) << step;
    }
    // And up again by the gear.
    const double down = spring.offset(0.3, offset - 1.0, speed);
    const double fall = spring.speed(0.3, offset - 1.0, speed);
    key(Qt::Key_Space);
    advance(Seconds(0.04));
    EXPECT_NEAR(below(), spring.offset(0.04, 1.0 + down, fall), 1e-6);
    advance(Seconds(2));
    EXPECT_EQ(below(), 0.0);
}

TEST_F(PanelSheet, TheGearTakesEachClickButTheSecondOfADoubleClickOnClose) {
    open();
    const auto isShown = [] {
        return model().property("showingSettings").toBool();
    };
    const QPoint gear = box("gear").center().toPoint();
    for (const bool opens : {true, false, true}) {
        click(gear); // where CLOSE comes to lie as well
        EXPECT_EQ(isShown(), opens);
        advance(Seconds(0.1));
    }
    advance(Seconds(2));
    QTest::mouseDClick(window(), Qt::LeftButton, {}, box("close").center().toPoint());
    settle();
    EXPECT_FALSE(isShown());
    click(gear);
    EXPECT_TRUE(isShown());
}

TEST_F(PanelSheet, LetsNothingThroughToThePointer) {
    setBacklight(0.1F);
    engine.intensity = 0.5;
    engine.brightness = 0.5;
    open();
    std::vector<QPoint> beneath;
    for (const char* name : {"DAY", "EVENING", "NIGHT", "power", "pwmSafeWarning"})
        beneath.push_back(box(name).center().toPoint());
    for (const char* name : {"WARMTH", "BRIGHTNESS"})
        for (const int side : {-40, 40})
            beneath.push_back({qRound(box(name).center().x()) + side, 288});
    openSheet();
    for (const QPoint& point : beneath) {
        move(point);
        click(point);
        wheel(point, 120);
        press(point);
        move(point - QPoint(0, 20));
        advance(Seconds(0.7));
        release(point - QPoint(0, 20));
        EXPECT_FALSE(engine.isEnabled) << point.y();
        EXPECT_EQ(engine.intensity, 0.5) << point.x() << ", " << point.y();
        EXPECT_EQ(engine.brightness, 0.5) << point.x() << ", " << point.y();
    }
    EXPECT_EQ(desktop.cursor.pushes, 0);
    EXPECT_EQ(find("pwmSafeTooltip"), nullptr);
    EXPECT_NE(find("settings"), nullptr);
}

TEST_F(PanelSheet, TakesTheHoverAwayFromWhatItCoversAndHidesItFromScreenReaders) {
    setBacklight(0.1F);
    open();
    const auto isRead = [] {
        QQuickItem& warning = item("pwmSafeWarning");
        return !QQmlProperty(&warning, "Accessible.ignored", qmlContext(&warning)).read().toBool();
    };
    EXPECT_TRUE(isRead());
    move(box("pwmSafeWarning").center().toPoint());
    advance(Seconds(1));
    ASSERT_NE(find("pwmSafeTooltip"), nullptr);
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    advance(Seconds(1));
    EXPECT_EQ(find("pwmSafeTooltip"), nullptr);
    EXPECT_EQ(desktop.cursor.depth, 0);
    EXPECT_FALSE(isRead());
    key(Qt::Key_Escape);
    advance(Seconds(1));
    EXPECT_TRUE(isRead());
    move(box("pwmSafeWarning").center().toPoint() + QPoint(4, 0));
    EXPECT_EQ(desktop.cursor.depth, 1);
}

} // namespace noctra
