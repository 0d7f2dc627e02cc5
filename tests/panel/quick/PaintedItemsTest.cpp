#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "QuickScene.h"
#include "panel/quick/BoxItem.h"
#include "panel/quick/GlowText.h"
#include "panel/quick/SoftShadow.h"

namespace noctra {

namespace {

struct BoxItemTest : QuickScene {
    BoxItem box{window.contentItem()};

    BoxItemTest() {
        box.setPosition({33.0, 41.0});
        box.setSize({101.0, 41.0});
        set("topColor", QColor(200, 0, 0));
        set("bottomColor", QColor(100, 0, 0));
    }
    void set(const char* name, const QVariant& value) { box.setProperty(name, value); }
};

struct GlowTextTest : QuickScene {
    GlowText text{window.contentItem()};

    GlowTextTest() {
        QFont font;
        font.setPixelSize(12);
        font.setBold(true);
        text.setPosition({50.0, 61.0});
        text.setSize({70.0, 24.0});
        text.setFont(font);
        text.setText("HH88");
        text.setColor(QColor(0, 255, 0));
        text.setGlowColor(QColor(255, 0, 0));
        text.setGlowRadius(5.0);
    }
};

} // namespace

TEST_F(BoxItemTest, RunsFromItsTopColourToItsBottomColour) {
    draw();
    EXPECT_TRUE(near(at(83, 61.5), 150, 0, 0, 3));
    EXPECT_TRUE(near(at(83, 42), 197, 0, 0, 3));
    EXPECT_TRUE(near(at(83, 81), 103, 0, 0, 3));
    const int first = static_cast<int>(std::floor(33 * scale() + 0.5));
    const int row = static_cast<int>(61.5 * scale());
    EXPECT_TRUE(near(shot.pixelColor(first - 1, row), grey)) << "a sharp edge";
    EXPECT_TRUE(near(shot.pixelColor(first, row), 150, 0, 0, 3));
    const int last = first + static_cast<int>(std::floor(101 * scale() + 0.5)) - 1;
    EXPECT_TRUE(near(shot.pixelColor(last, row), 150, 0, 0, 3));
    EXPECT_TRUE(near(shot.pixelColor(last + 1, row), grey));
}

TEST_F(BoxItemTest, DrawsItsBorderInsideOrOnItsEdge) {
    set("borderWidth", 4.0);
    set("borderTopColor", QColor(0, 0, 255));
    set("borderBottomColor", QColor(0, 255, 0));
    for (const bool inside : {true, false}) {
        set("borderInside", inside);
        draw();
        EXPECT_TRUE(near(at(83, 42), 0, 12, 243, 12)) << "the upper edge";
        EXPECT_TRUE(near(at(83, 81), 0, 243, 12, 12)) << "the lower edge";
        EXPECT_EQ(at(83, 44).red() == 0, inside);
        EXPECT_EQ(at(83, 40).red() == 0, !inside);
    }
}

TEST_F(BoxItemTest, CastsItsShadowsWithoutPaintingThemAgainForAnotherColour) {
    box.setPosition({32.0, 40.0}); // whole pixels at every scale factor
    box.setSize({100.0, 40.0});
    set("shadowColor", QColor(0, 0, 0, 128));
    set("shadowRadius", 3.0);
    set("shadowY", 4.0);
    draw();
    const int column = static_cast<int>(82 * scale());
    for (int row = static_cast<int>(80 * scale()); row < 100 * scale(); ++row) {
        const double y = (row + 0.5) / scale();
        const double cover = gaussianShare(82, 32, 132, 3) * gaussianShare(y, 44, 84, 3);
        EXPECT_TRUE(near(shot.pixelColor(column, row), grey * (1 - 128 / 255.0 * cover), 3)) << y;
    }
    EXPECT_TRUE(near(at(83, 34), grey, 2)) << "above";
    set("topColor", QColor(0, 0, 200));
    draw();
    EXPECT_EQ(box.picture().blurCount(), 1);

    set("shadow2Color", QColor(255, 255, 0));
    set("shadow2Radius", 4.0);
    draw();
    EXPECT_GT(at(30, 61).red(), grey + 20);
    EXPECT_LT(at(30, 61).blue(), grey - 20);
}

TEST_F(BoxItemTest, StaysSharpWhereItIsMovedToAndIsNotPaintedAgain) {
    QQuickItem parent(window.contentItem());
    box.setParentItem(&parent);
    draw();
    const int painted = box.picture().paintCount();
    for (const double y : {0.3, 1.7, 10.0}) {
        parent.setY(y);
        draw();
        const int first = static_cast<int>(std::floor((41 + y) * scale() + 0.5));
        const int column = static_cast<int>(83 * scale());
        EXPECT_TRUE(near(shot.pixelColor(column, first - 1), grey)) << y;
        EXPECT_TRUE(near(shot.pixelColor(column, first), 199, 0, 0, 3)) << y;
    }
    EXPECT_EQ(box.picture().paintCount(), painted);
}

TEST_F(GlowTextTest, GlowsAroundTheText) {
    draw();
    double green = 0;
    double redAbove = 0;
    for (double x = 50; x < 120; ++x) {
        for (double y = 61; y < 85; ++y)
            green = std::max(green, at(x, y).greenF() - at(x, y).redF() + 0.0);
        redAbove = std::max(redAbove, at(x, 63).redF() - at(x, 63).greenF() + 0.0);
    }
    EXPECT_GT(green, 0.8) << "the text itself";
    EXPECT_GT(redAbove, 0.05);
    EXPECT_TRUE(near(at(85, 35), grey));
}

TEST_F(GlowTextTest, CutsOffWhatIsWiderThanItsBoxButNotTheGlow) {
    text.setText("HHHHHHHHHHHHHHHHHHHHHHHH");
    draw();
    for (double y = 61; y < 85; ++y)
        EXPECT_LE(at(48, y).green(), grey) << y;
    EXPECT_GT(at(48, 73).red(), at(48, 73).green() + 20);
    EXPECT_EQ(text.width(), 70.0);
}

TEST_F(GlowTextTest, IsPaintedAgainForAnotherTextOnly) {
    draw();
    const int painted = text.picture().paintCount();
    const QImage before = shot;
    text.setText("HH88");
    draw();
    EXPECT_EQ(text.picture().paintCount(), painted);
    text.setText("11");
    draw();
    EXPECT_EQ(text.picture().paintCount(), painted + 1);
    EXPECT_NE(shot, before);
}

TEST(SoftShadowTest, SpreadsAPointLikeAGaussianAndLosesNothing) {
    for (const double sigma : {1.0, 1.25, 3.0, 5.5, 12.0}) {
        // A square, so that eight bits resolve its tails.
        constexpr int side = 20;
        const int bleed = SoftShadow::bleed(sigma);
        const int size = side + 2 * bleed;
        QImage mask(size, size + 3, QImage::Format_Alpha8);
        mask.fill(0);
        for (int y = 0; y < side; ++y)
            std::fill_n(mask.scanLine(bleed + y) + bleed, side, std::uint8_t{255});
        SoftShadow().blur(mask, sigma);
        double sum = 0.0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                const double expected = 255 * gaussianShare(x + 0.5, bleed, bleed + side, sigma) *
                                        gaussianShare(y + 0.5, bleed, bleed + side, sigma);
                ASSERT_NEAR(mask.constScanLine(y)[x], expected, 6)
                    << sigma << ": " << x << " " << y;
                sum += mask.constScanLine(y)[x];
            }
        EXPECT_NEAR(sum / (255.0 * side * side), 1.0, 0.01) << sigma;
    }
}

} // namespace noctra
