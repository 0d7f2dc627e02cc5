#include "platform/qt/pdf/PdfIcon.h"

#include <algorithm>
#include <cmath>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

namespace noctra {

namespace {

QString iconPath(const char* name) {
    return QStringLiteral(NOCTRA_SOURCE_DIR "/resources/icons/%1.pdf").arg(name);
}

/// How much of the square is covered, 0 to 1.
double coverage(const QImage& icon) {
    double sum = 0.0;
    for (int y = 0; y < icon.height(); ++y)
        for (int x = 0; x < icon.width(); ++x)
            sum += icon.pixelColor(x, y).alphaF();
    return sum / (icon.width() * icon.height());
}

/// The largest change of any pixel's coverage, 0 to 1.
double largestDifference(const QImage& one, const QImage& other) {
    double largest = 0.0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            largest = std::max<double>(
                largest, std::abs(one.pixelColor(x, y).alphaF() - other.pixelColor(x, y).alphaF()));
    return largest;
}

} // namespace

TEST(PdfIcon, DrawsEachOfTheProgramsIconsOnATransparentGround) {
    for (const char* name : {"active", "off", "gear", "clipboard", "check", "power"})
        for (const double points : {18.0, 22.0})
            for (const double ratio : {1.0, 1.5, 2.0}) {
                const QImage icon = drawPdfIcon(iconPath(name), points, ratio);
                ASSERT_EQ(icon.width(), points * ratio) << name;
                EXPECT_EQ(icon.devicePixelRatio(), ratio);
                const int last = icon.width() - 1;
                for (const QPoint corner :
                     {QPoint(0, 0), QPoint(last, 0), QPoint(0, last), QPoint(last, last)})
                    EXPECT_EQ(icon.pixelColor(corner).alpha(), 0) << name;
                EXPECT_GT(coverage(icon), 0.15) << name;
                EXPECT_LT(coverage(icon), 0.8) << name;
            }
}

TEST(PdfIcon, KeepsItsShapeAndTakesTheColourAsATemplate) {
    const QImage icon = drawPdfIcon(iconPath("active"), 18.0, 2.0);
    const QImage white = tinted(icon, Qt::white);
    EXPECT_EQ(white.devicePixelRatio(), 2.0);
    EXPECT_LT(largestDifference(icon, white), 0.01);
    for (int y = 0; y < white.height(); ++y)
        for (int x = 0; x < white.width(); ++x)
            ASSERT_TRUE(white.pixelColor(x, y).alpha() == 0 ||
                        white.pixelColor(x, y).lightness() == 255);
    EXPECT_NEAR(coverage(tinted(icon, QColor(0, 255, 0, 128))), coverage(icon) / 2.0, 0.01);
    EXPECT_TRUE(tinted({}, Qt::white).isNull());
}

TEST(PdfIcon, IsNothingWhereThereIsNoDocumentOrNoRoom) {
    EXPECT_TRUE(drawPdfIcon("/nowhere.pdf", 18.0, 1.0).isNull());
    EXPECT_TRUE(drawPdfIcon(NOCTRA_SOURCE_DIR "/LICENSE", 18.0, 1.0).isNull());
    EXPECT_TRUE(drawPdfIcon(NOCTRA_SOURCE_DIR, 18.0, 1.0).isNull());
    for (const double points : {0.0, -18.0, 1e9, std::nan("")})
        EXPECT_TRUE(drawPdfIcon(iconPath("gear"), points, 1.0).isNull()) << points;
    QTemporaryDir folder;
    QFile whole(iconPath("gear"));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    QFile part(folder.filePath("part.pdf"));
    ASSERT_TRUE(part.open(QIODevice::WriteOnly));
    part.write(whole.read(150));
    part.close();
    EXPECT_TRUE(drawPdfIcon(part.fileName(), 18.0, 1.0).isNull());
}

} // namespace noctra
