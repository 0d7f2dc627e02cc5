// Where the controls can be clicked, and what the pointer does to them.

#include <vector>

#include "tests/panel/window/PanelScene.h"

namespace noctra {

namespace {

struct PanelPointer : PanelScene {
    /// What a click on the control has changed; and undoes it.
    bool changed(const QString& name) {
        advance(Seconds(1));
        bool did = false;
        if (name == "gear") {
            did = model().property("showingSettings").toBool();
            if (did)
                key(Qt::Key_Escape);
        } else if (name == "pwmSafeBar") {
            did = manager.isEnabled;
            manager.isEnabled = false;
        } else {
            did = engine.isEnabled;
            engine.isEnabled = false;
        }
        advance(Seconds(1));
        return did;
    }
    /// Of every control there is something to click at; its clickable surface reaches this far
    /// beyond its box.
    struct Control {
        QString name;
        double reach;
    };
    const std::vector<Control> controls{{"gear", 8},    {"pwmSafeBar", 0}, {"DAY", 0},
                                        {"EVENING", 0}, {"NIGHT", 0},      {"power", 0}};
};

} // namespace

TEST_F(PanelPointer, TheWholeSurfaceOfEachControlCanBeClickedAndNoMore) {
    setControllable(true);
    open();
    for (const auto& [name, reach] : controls) {
        const QRectF area = box(name).adjusted(-reach, -reach, reach, reach);
        const QRect inside = area.adjusted(1, 1, -1, -1).toRect();
        for (const QPoint& point : {inside.topLeft(), inside.topRight(), inside.bottomLeft(),
                                    inside.bottomRight(), inside.center()}) {
            click(point);
            EXPECT_TRUE(changed(name)) << name.toStdString() << point.x() << ", " << point.y();
        }
        const QPoint middle = inside.center();
        for (const QPoint& point : {QPoint(middle.x(), qRound(area.top()) - 2),
                                    QPoint(middle.x(), qRound(area.bottom()) + 2)}) {
            click(point);
            EXPECT_FALSE(changed(name)) << name.toStdString() << point.x() << ", " << point.y();
        }
    }
}

TEST_F(PanelPointer, AButtonIsPressedByTheLeftButtonReleasedOverIt) {
    setControllable(true);
    open();
    for (const auto& [name, reach] : controls) {
        const QPoint middle = box(name).center().toPoint();
        for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
            click(middle, button);
            EXPECT_FALSE(changed(name)) << name.toStdString() << button;
        }
        press(middle);
        EXPECT_LT(item(name).opacity(), 1.0) << "it shows that it is held";
        move({3, 200});
        EXPECT_EQ(item(name).opacity(), 1.0);
        release({3, 200});
        EXPECT_FALSE(changed(name)) << name.toStdString();
        press(middle);
        move({3, 200});
        move(middle);
        release(middle);
        EXPECT_TRUE(changed(name)) << name.toStdString();
        EXPECT_EQ(item(name).opacity(), 1.0);
    }
}

TEST_F(PanelPointer, TheWarningsTooltipStaysOpenUnderThePointerAndLetsNothingThrough) {
    setBacklight(0.1F);
    engine.intensity = 0.5;
    engine.brightness = 0.5;
    open();
    const QRectF warning = box("pwmSafeWarning");
    move({qRound(warning.left()) + 1, qRound(warning.top()) + 1});
    EXPECT_EQ(desktop.cursor.depth, 1) << "its whole frame reacts";
    advance(Seconds(0.7));
    const QRectF tooltip = box("pwmSafeTooltip");
    move({160, qRound(warning.top()) - 4});
    EXPECT_EQ(desktop.cursor.depth, 0);
    advance(Seconds(0.1));
    for (const int x : {86, 234}) {
        const QPoint point(x, qRound(tooltip.top()) + 8);
        move(point);
        advance(Seconds(0.5));
        EXPECT_NE(find("pwmSafeTooltip"), nullptr);
        press(point);
        move(point - QPoint(0, 30));
        release(point - QPoint(0, 30));
        move(point);
        wheel(point, 120);
        advance(Seconds(0.5));
    }
    EXPECT_EQ(engine.intensity, 0.5);
    EXPECT_EQ(engine.brightness, 0.5);
    EXPECT_NE(find("pwmSafeTooltip"), nullptr);
    move({160, 100});
    advance(Seconds(0.5));
    EXPECT_EQ(find("pwmSafeTooltip"), nullptr);
}

} // namespace noctra
