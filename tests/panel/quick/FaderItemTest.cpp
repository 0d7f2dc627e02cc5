#include <limits>
#include <memory>
#include <set>
#include <vector>

#include <QtGui/QWheelEvent>
#include <QtQuick/QQuickWindow>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include "panel/quick/FaderItem.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace noctra {

namespace {

struct TestSource : FaderSource {
    mutable SimulatedDesktop desktop;
    double bound = 0.5;
    double minimum = 0.0;
    int writes = 0;

    [[nodiscard]] StudioFader fader() const override {
        auto* self = const_cast<TestSource*>(this);
        return {.value = {[self] { return self->bound; },
                          [self](double x) {
                              self->bound = x;
                              ++self->writes;
                          }},
                .color = {1.0, 0.5, 0.0},
                .minimumValue = minimum};
    }
    [[nodiscard]] MainQueue& mainQueue() const override { return desktop.mainQueue; }
    [[nodiscard]] const SteadyClock& clock() const override { return desktop.steady; }
};

struct FaderItemTest : testing::Test {
    QQuickWindow window;

    static constexpr double left = 33.0;
    static constexpr double bottom = 231.0;

    TestSource source;
    FaderItem item{window.contentItem()};

    FaderItemTest() {
        window.resize(200, 260);
        item.setPosition({left, bottom - 200.0});
        item.setSize({141.0, 200.0});
        item.setSource(&source);
    }
    static QPoint pointer(double y) {
        return {static_cast<int>(left) + 70, 231 - static_cast<int>(y)};
    }
    void render() { emit source.rendered(); }
    void wheel(int units) {
        QWheelEvent event(pointer(100), window.mapToGlobal(pointer(100)), {}, {0, units}, {}, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&window, &event);
    }
};

} // namespace

TEST_F(FaderItemTest, EndsTheDragWhenThePointerOrTheFaderIsTakenAway) {
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.grabWindow();
    QTest::mousePress(&window, Qt::LeftButton, {}, pointer(100));
    item.ungrabMouse();
    EXPECT_FALSE(item.isDragging());
    QTest::mouseMove(&window, pointer(180));
    EXPECT_EQ(item.value(), 0.5);
    QTest::mouseRelease(&window, Qt::LeftButton, {}, pointer(180));
    source.desktop.settle();
    EXPECT_EQ(source.writes, 2);

    QTest::mouseDClick(&window, Qt::LeftButton, {}, pointer(100));
    source.desktop.settle();
    EXPECT_EQ(source.writes, 6) << "two clicks";
    EXPECT_FALSE(item.isDragging());

    QTest::mousePress(&window, Qt::RightButton, {}, pointer(100));
    EXPECT_FALSE(item.isDragging());
    QTest::mouseRelease(&window, Qt::RightButton, {}, pointer(100));

    QTest::mousePress(&window, Qt::LeftButton, {}, pointer(100));
    item.setSource(nullptr);
    EXPECT_FALSE(item.isDragging());
    source.desktop.settle();
    EXPECT_EQ(source.writes, 8) << "what it did before it went, and its end";
}

TEST_F(FaderItemTest, TakesTheWheelAndTheKeys) {
    source.minimum = 0.1;
    render();
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.grabWindow();
    item.forceActiveFocus();
    const std::vector<std::pair<int, double>> keys{
        {Qt::Key_Up, 0.51},    {Qt::Key_Left, 0.5}, {Qt::Key_PageUp, 0.6}, {Qt::Key_PageDown, 0.5},
        {Qt::Key_Right, 0.51}, {Qt::Key_Home, 0.1}, {Qt::Key_Down, 0.1},   {Qt::Key_End, 1.0}};
    for (const auto& [key, value] : keys) {
        QTest::keyClick(&window, static_cast<Qt::Key>(key));
        EXPECT_DOUBLE_EQ(item.value(), value) << key;
    }
    wheel(-120);
    EXPECT_DOUBLE_EQ(item.value(), 0.98);
    wheel(60);
    EXPECT_DOUBLE_EQ(item.value(), 0.99);
    // Assistive technology:
    for (const double wanted : {0.4, std::numeric_limits<double>::quiet_NaN()}) {
        item.setProperty("value", wanted);
        source.desktop.settle();
        EXPECT_EQ(source.bound, 0.4) << wanted;
    }
}

} // namespace noctra
