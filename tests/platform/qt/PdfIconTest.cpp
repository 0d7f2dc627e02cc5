#include "platform/qt/pdf/PdfIcon.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace noctra {

namespace {

const std::string icons = NOCTRA_SOURCE_DIR "/resources/icons/";

QImage draw(const std::string& file, double points, double ratio) {
    return drawPdfIcon(QString::fromStdString(file), points, ratio);
}

} // namespace

TEST(PdfIcon, DrawsEachOfTheProgramsIconsOnATransparentGround) {
    for (const char* name : {"active", "off", "gear", "clipboard", "check", "power"})
        for (const double points : {18.0, 22.0})
            for (const double ratio : {1.0, 1.5, 2.0}) {
                const QImage icon = draw(icons + name + ".pdf", points, ratio);
                ASSERT_EQ(icon.width(), points * ratio) << name;
                EXPECT_EQ(icon.devicePixelRatio(), ratio);
                EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0) << name;
                double covered = 0.0;
                for (int y = 0; y < icon.height(); ++y)
                    for (int x = 0; x < icon.width(); ++x)
                        covered += icon.pixelColor(x, y).alphaF();
                EXPECT_NEAR(covered / (icon.width() * icon.height()), 0.475, 0.325) << name;
            }
}

TEST(PdfIcon, IsNothingWhereThereIsNoDocumentOrNoRoom) {
    const test::TemporaryFolder folder;
    const std::string part = folder / "part.pdf";
    test::writeFile(part, test::readFile(icons + "gear.pdf").substr(0, 150));
    for (const std::string& file : std::vector<std::string>{
             "/nowhere.pdf", NOCTRA_SOURCE_DIR "/LICENSE", NOCTRA_SOURCE_DIR, part})
        EXPECT_TRUE(draw(file, 18.0, 1.0).isNull()) << file;
    for (const double points : {0.0, -18.0, 1e9, std::nan("")})
        EXPECT_TRUE(draw(icons + "gear.pdf", points, 1.0).isNull()) << points;
}

} // namespace noctra
