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

QImage drawPage(const QTemporaryDir& folder, const QByteArray& size, const QByteArray& drawing) {
    const QString path = folder.filePath("page.pdf");
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("%PDF-1.4\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n"
               "2 0 obj\n<< /Type /Pages /Kids [3 0 R] /Count 1 >>\nendobj\n"
               "3 0 obj\n<< /Type /Page /Parent 2 0 R /MediaBox [0 0 " +
               size + "] /Contents 4 0 R >>\nendobj\n4 0 obj\n<< /Length " +
               QByteArray::number(drawing.size()) + " >>\nstream\n" + drawing +
               "\nendstream\nendobj\ntrailer\n<< /Size 5 /Root 1 0 R >>\n%%EOF\n");
    file.close();
    return drawPdfIcon(path, 20.0, 1.0);
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

TEST(PdfIcon, TellsTheStatesApartByShapeAndColour) {
    const QImage active = drawPdfIcon(iconPath("active"), 18.0, 1.0);
    const QImage off = drawPdfIcon(iconPath("off"), 18.0, 1.0);
    EXPECT_GT(coverage(active), coverage(off) + 0.1);
    EXPECT_GT(largestDifference(active, off), 0.9);
    EXPECT_GT(active.pixelColor(3, 6).red(), 200) << "lit";
    EXPECT_LT(off.pixelColor(9, 2).red(), 20) << "a template";
    EXPECT_LT(active.pixelColor(7, 9).alpha(), 40)
        << "the moon is cut out, a template shows it too";
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

TEST(PdfIcon, FitsAPageThatIsNoSquareIntoTheMiddle) {
    const QTemporaryDir folder;
    const QImage icon = drawPage(folder, "40 20", "1 0 0 rg 0 0 40 20 re f");
    ASSERT_EQ(icon.size(), QSize(20, 20));
    EXPECT_EQ(icon.pixelColor(10, 4).alpha(), 0);
    EXPECT_EQ(icon.pixelColor(0, 5), QColor(Qt::red));
    EXPECT_EQ(icon.pixelColor(19, 14), QColor(Qt::red));
    EXPECT_EQ(icon.pixelColor(10, 15).alpha(), 0);
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
