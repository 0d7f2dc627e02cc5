// The panel worked with the keyboard, and its end.

#include <string>
#include <vector>

#include <QtCore/QPointer>
#include <QtTest/QTest>

#include "tests/panel/window/PanelScene.h"

namespace noctra {

namespace {

struct PanelFocus : PanelScene {
    /// The controls that get the focus, one after the other.
    std::string walk(Qt::Key step, int count) {
        std::string way;
        for (; count > 0; --count) {
            key(step, step == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
            way += focused().toStdString() + ' ';
        }
        return way;
    }
    void focus(const QString& name) {
        for (int step = 0; step < 20 && focused() != name; ++step)
            key(Qt::Key_Tab);
        ASSERT_EQ(focused(), name);
    }
    /// Where the ring of the focus is seen; empty where it is not.
    [[nodiscard]] static QRectF ring() {
        const QImage picture = grab();
        QRect found;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (picture.pixelColor(x, y) == QColor(0x6c, 0xb2, 0xff))
                    found |= QRect(x, y, 1, 1);
        return found;
    }
};

} // namespace

TEST_F(PanelFocus, TabGoesThroughTheControlsFromTopToBottomAndRound) {
    open();
    EXPECT_EQ(walk(Qt::Key_Tab, 8), "gear WARMTH BRIGHTNESS DAY EVENING NIGHT power gear ");
    EXPECT_EQ(walk(Qt::Key_Backtab, 3), "power NIGHT EVENING ");
    setControllable(true);
    settle();
    EXPECT_EQ(walk(Qt::Key_Backtab, 4), "DAY pwmSafeBar BRIGHTNESS WARMTH ");
}

TEST_F(PanelFocus, StaysWithinTheSheetAndComesBackToTheGear) {
    open();
    focus("gear");
    for (const Qt::Key closing : {Qt::Key_Escape, Qt::Key_Space}) {
        key(Qt::Key_Return);
        EXPECT_EQ(focused(), "close");
        EXPECT_EQ(walk(Qt::Key_Tab, 6),
                  "LAUNCH AT LOGIN ALLOW EXTREME DIM copy stop close LAUNCH AT LOGIN ");
        EXPECT_EQ(walk(Qt::Key_Backtab, 3), "close stop copy ");
        focus("close");
        advance(Seconds(0.1));
        key(closing);
        EXPECT_EQ(focused(), "gear");
        EXPECT_EQ(walk(Qt::Key_Tab, 2), "WARMTH BRIGHTNESS ") << "while the sheet leaves";
        EXPECT_EQ(walk(Qt::Key_Backtab, 3), "WARMTH gear power ");
        focus("gear");
        advance(Seconds(2));
        EXPECT_EQ(focused(), "gear");
    }
}

TEST_F(PanelFocus, FollowsASheetThatIsTurnedRoundOnItsWay) {
    open();
    focus("gear");
    key(Qt::Key_Return);
    advance(Seconds(0.1));
    key(Qt::Key_Escape);
    EXPECT_EQ(focused(), "gear");
    key(Qt::Key_Return);
    EXPECT_EQ(focused(), "close") << "opened again before it has left";
    key(Qt::Key_Escape);
    advance(Seconds(2));
    QTest::keyClick(window(), Qt::Key_Space); // both are found in one turn
    QTest::keyClick(window(), Qt::Key_Space);
    settle();
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), "WARMTH") << "opened and closed at once";
}

TEST_F(PanelFocus, SpaceAndReturnPressWhatHasTheFocus) {
    setControllable(true);
    open();
    for (const Qt::Key pressing : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        engine.intensity = 0.0;
        engine.isEnabled = false;
        focus("EVENING");
        key(pressing);
        EXPECT_TRUE(engine.isEnabled);
        EXPECT_EQ(engine.brightness, 0.85);
        focus("power");
        key(pressing);
        EXPECT_FALSE(engine.isEnabled);
        const bool on = manager.isEnabled;
        focus("pwmSafeBar");
        key(pressing);
        EXPECT_NE(manager.isEnabled, on);
    }
}

TEST_F(PanelFocus, EscapeClosesTheSheetFirstAndThenThePanelWithAllThatIsInIt) {
    setBacklight(0.1F);
    open();
    openSheet();
    key(Qt::Key_Escape);
    EXPECT_TRUE(panel->isShown());
    EXPECT_FALSE(model().property("showingSettings").toBool());
    advance(Seconds(2));
    openSheet();
    key(Qt::Key_Escape);
    advance(Seconds(0.1)); // it is still leaving
    move(box("pwmSafeWarning").topLeft().toPoint() + QPoint(2, 2));
    advance(Seconds(0.1));
    std::vector<QPointer<QQuickItem>> items;
    for (QQuickItem* one : window()->contentItem()->findChildren<QQuickItem*>())
        items.emplace_back(one);
    const QPointer<QQuickWindow> closing = window();
    const QPointer<QObject> shown = &model();
    ASSERT_GT(items.size(), 50U);

    key(Qt::Key_Escape);
    EXPECT_FALSE(panel->isShown());
    EXPECT_TRUE(closing.isNull());
    EXPECT_TRUE(shown.isNull());
    for (const auto& one : items)
        ASSERT_TRUE(one.isNull()) << one->metaObject()->className();
    EXPECT_EQ(desktop.cursor.depth, 0);
    advance(Seconds(2)); // what was still to come finds nothing
    engine.intensity = 0.7;
    settle();

    open();
    EXPECT_TRUE(panel->isShown());
    EXPECT_EQ(find("settings"), nullptr);
}

} // namespace noctra
