// The measuring instruments are measured first: a harness that sees nothing passes every test.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

class Harness : public DesktopFixture {};

TEST_F(Harness, ReferenceColoursAgreeWithFiguresWorkedOutByHand) {
    struct Case {
        double warmth, red, green, blue;
    };
    for (const Case& known :
         {Case{0.0, 1, 1, 1}, Case{0.5, 1, 0.885918, 0.327651}, Case{0.7, 1, 0.655876, 0.019336},
          Case{0.9, 1, 0.163101, 0.004809}, Case{1.0, 1, 0, 0}}) {
        const Multipliers colour = multipliersFor(known.warmth);
        EXPECT_NEAR(colour.red, known.red, 1e-6) << "warmth " << known.warmth;
        EXPECT_NEAR(colour.green, known.green, 1e-6) << "warmth " << known.warmth;
        EXPECT_NEAR(colour.blue, known.blue, 1e-6) << "warmth " << known.warmth;
    }
}

TEST_F(Harness, ATintOfOneStepOnOneEntryIsSeen) {
    EXPECT_TRUE(isUntouched());
    TablesByCrtc tinted = tablesBefore();
    tinted.at(1).blue.at(200) += 1;
    probe().write(tinted);
    EXPECT_FALSE(isUntouched());
    EXPECT_FALSE(isDimmed());
    probe().write(expectedTables(tablesBefore(), presetWarmth, presetBrightness));
    EXPECT_FALSE(isUntouched());
}

TEST_F(Harness, TheDisplaysHaveDifferentTablesThatAreNotLinear) {
    const TablesByCrtc lit = probe().readLit();
    ASSERT_EQ(lit.size(), 3U);
    EXPECT_NE(lit.at(0), lit.at(1));
    EXPECT_NE(lit.at(1), lit.at(2));
    for (const auto& [crtc, tables] : lit) {
        EXPECT_EQ(tables.red.size(), 256U);
        EXPECT_NE(tables.red, tables.green);
        EXPECT_NE(tables.green, tables.blue);
        EXPECT_GT(std::abs(tables.green.at(128) - 128 * 65535 / 255), 655) << "CRTC " << crtc;
    }
}

TEST_F(Harness, AnUnpluggedOutputGoesDarkAndComesBackWithItsTables) {
    plugs().unplug(1);
    EXPECT_EQ(probe().readLit().size(), 2U);
    EXPECT_TRUE(isUntouched());
    plugs().plug(1);
    EXPECT_EQ(probe().readLit().size(), 3U);
    EXPECT_TRUE(isUntouched());
}

} // namespace

} // namespace noctra::desktop
