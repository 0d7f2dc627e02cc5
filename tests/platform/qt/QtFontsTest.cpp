#include "platform/qt/QtFonts.h"

#include <QtCore/QString>
#include <QtGui/QFont>
#include <QtGui/QFontInfo>
#include <QtGui/QFontMetricsF>

#include <gtest/gtest.h>

namespace noctra {

namespace {

const std::string folder = NOCTRA_SOURCE_DIR "/resources/fonts/";

double widthOf(const char* text, const FontFace& face) {
    QFont font(QString::fromStdString(face.family));
    font.setPointSizeF(40.0);
    font.setWeight(static_cast<QFont::Weight>(face.weight));
    EXPECT_EQ(QFontInfo(font).family().toStdString(), face.family);
    EXPECT_EQ(QFontInfo(font).weight(), face.weight);
    return QFontMetricsF(font).horizontalAdvance(text);
}

} // namespace

TEST(QtFonts, AreFoundByPostScriptNameAndDrawnEachInItsOwnWay) {
    QtFonts fonts;
    EXPECT_EQ(fonts.find("Anybody-Bold"), std::nullopt);
    EXPECT_FALSE(fonts.registerFont("/nowhere.ttf"));
    EXPECT_FALSE(fonts.registerFont(folder + "OFL.txt"));
    EXPECT_TRUE(fonts.registerFont(folder + "Anybody-ExtraBold.ttf"));
    EXPECT_EQ(fonts.find("Anybody-Bold"), std::nullopt);
    for (int time = 0; time < 2; ++time)
        EXPECT_TRUE(fonts.registerFont(folder + "Anybody-Bold.ttf"));
    EXPECT_EQ(fonts.find("Anybody-Bold"), (FontFace{"Anybody", 700}));
    EXPECT_EQ(fonts.find("Anybody-ExtraBold"), (FontFace{"Anybody", 800}));
    for (const char* name : {"Anybody", "anybody-bold", "Anybody-", ""})
        EXPECT_EQ(fonts.find(name), std::nullopt) << name;
    EXPECT_NE(fonts.systemFamily(), "");

    EXPECT_GT(widthOf("NOCTRA", *fonts.find("Anybody-ExtraBold")),
              widthOf("NOCTRA", *fonts.find("Anybody-Bold")) + 1.0);
    const FontFace fixed{fonts.fixedFamily(), 400};
    EXPECT_NEAR(widthOf("iiii", fixed), widthOf("MMMM", fixed), 0.01);
}

} // namespace noctra
