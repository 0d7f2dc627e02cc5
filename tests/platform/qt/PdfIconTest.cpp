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
