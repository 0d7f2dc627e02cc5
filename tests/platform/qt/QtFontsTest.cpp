#include "platform/qt/QtFonts.h"

#include <algorithm>

#include <QtCore/QString>
#include <QtGui/QFont>
#include <QtGui/QFontInfo>
#include <QtGui/QFontMetricsF>

#include <gtest/gtest.h>

#include "platform/qt/OpenTypeTables.h"
#include "platform/simulated/SimulatedFonts.h"

namespace noctra {

namespace {

const std::string folder = NOCTRA_SOURCE_DIR "/resources/fonts/";

/// What every adapter does that can register the program's own two fonts.
void expectContract(Fonts& fonts) {
    EXPECT_EQ(fonts.find("Anybody-Bold"), std::nullopt);
    EXPECT_FALSE(fonts.registerFont("/nowhere.ttf"));
    EXPECT_FALSE(fonts.registerFont(folder + "OFL.txt"));
    EXPECT_TRUE(fonts.registerFont(folder + "Anybody-ExtraBold.ttf"));
    EXPECT_EQ(fonts.find("Anybody-ExtraBold"), (FontFace{"Anybody", 800}));
    EXPECT_EQ(fonts.find("Anybody-Bold"), std::nullopt);
    EXPECT_TRUE(fonts.registerFont(folder + "Anybody-Bold.ttf"));
    EXPECT_TRUE(fonts.registerFont(folder + "Anybody-Bold.ttf"));
    EXPECT_EQ(fonts.find("Anybody-Bold"), (FontFace{"Anybody", 700}));
    EXPECT_EQ(fonts.find("Anybody-ExtraBold"), (FontFace{"Anybody", 800}));
    for (const char* name : {"Anybody", "anybody-bold", "Anybody-", ""})
        EXPECT_EQ(fonts.find(name), std::nullopt) << name;
    EXPECT_NE(fonts.systemFamily(), "");
    EXPECT_NE(fonts.fixedFamily(), "");
}

double widthOf(const char* text, const FontFace& face) {
    QFont font(QString::fromStdString(face.family));
    font.setPointSizeF(40.0);
    font.setWeight(static_cast<QFont::Weight>(face.weight));
    EXPECT_EQ(QFontInfo(font).family().toStdString(), face.family);
    EXPECT_EQ(QFontInfo(font).weight(), face.weight);
    return QFontMetricsF(font).horizontalAdvance(text);
}

} // namespace

TEST(QtFonts, AreFoundAsTheSimulatedOnesAre) {
    QtFonts fonts;
    expectContract(fonts);
    SimulatedFonts simulated;
    simulated.files[folder + "Anybody-Bold.ttf"] = {"Anybody-Bold", {"Anybody", 700}};
    simulated.files[folder + "Anybody-ExtraBold.ttf"] = {"Anybody-ExtraBold", {"Anybody", 800}};
    expectContract(simulated);
}

TEST(QtFonts, AreDrawnByFamilyAndWeightEachInItsOwnWay) {
    QtFonts fonts;
    ASSERT_TRUE(fonts.registerFont(folder + "Anybody-Bold.ttf"));
    ASSERT_TRUE(fonts.registerFont(folder + "Anybody-ExtraBold.ttf"));
    EXPECT_GT(widthOf("NOCTRA", *fonts.find("Anybody-ExtraBold")),
              widthOf("NOCTRA", *fonts.find("Anybody-Bold")) + 1.0);
    const FontFace fixed{fonts.fixedFamily(), 400};
    EXPECT_NEAR(widthOf("iiii", fixed), widthOf("MMMM", fixed), 0.01);
}

TEST(OpenTypeTables, HoldNothingWhereTheyAreCutShort) {
    const QByteArray names("\0\0\0\2\0\x1e"               // two records, texts from 30
                           "\0\1\0\0\0\0\0\4\0\1\0\0"     // another name
                           "\0\3\0\1\x04\x09\0\6\0\6\0\1" // the PostScript name
                           "x\0A\0-\0B",
                           37);
    EXPECT_EQ(postScriptName(names), "A-B");
    for (qsizetype size = 0; size < names.size(); ++size)
        EXPECT_EQ(postScriptName(names.left(size)), std::nullopt) << size;
    EXPECT_EQ(weightClass(QByteArray("\0\4\0\0\3\x20", 6)), 800);
    EXPECT_EQ(weightClass(QByteArray("\0\4\0\0\3", 5)), std::nullopt);
    const QByteArray file("\0\1\0\0\0\1\0\0\0\0\0\0"       // one table
                          "OS/2\0\0\0\0\0\0\0\x1c\0\0\0\2" // two bytes from 28
                          "ab",
                          30);
    EXPECT_EQ(openTypeTable(file, "OS/2"), "ab");
    EXPECT_EQ(openTypeTable(file, "name"), "");
    for (qsizetype size = 0; size < file.size(); ++size)
        EXPECT_EQ(openTypeTable(file.left(size), "OS/2"), "") << size;
}

} // namespace noctra
