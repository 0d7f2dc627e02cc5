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

TEST_F(GlowTextTest, CutsOffWhatIsWiderThanItsBoxButNotTheGlow) {
    text.setText("HHHHHHHHHHHHHHHHHHHHHHHH");
    draw();
    for (double y = 61; y < 85; ++y)
        EXPECT_LE(at(48, y).green(), grey) << y;
    EXPECT_GT(at(48, 73).red(), at(48, 73).green() + 20);
    EXPECT_EQ(text.width(), 70.0);
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
