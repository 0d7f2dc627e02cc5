#include "platform/qt/pdf/PdfIcon.h"

#include <cmath>

#include <QtGui/QPainter>
#include <QtPdf/QPdfDocument>

namespace noctra {

namespace {

constexpr double largest = 4096.0; ///< pixels to a side; no icon is that large

} // namespace

QImage drawPdfIcon(const QString& path, double points, double devicePixelRatio) {
    const double side = std::round(points * devicePixelRatio);
    if (!(side >= 1.0 && side <= largest))
        return {};
    QPdfDocument document;
    if (document.load(path) != QPdfDocument::Error::None || document.pageCount() < 1)
        return {};
    const QSize square(static_cast<int>(side), static_cast<int>(side));
    const QSize fitting = document.pagePointSize(0).scaled(square, Qt::KeepAspectRatio).toSize();
    const QImage page = document.render(0, fitting.expandedTo({1, 1}));
    if (page.isNull())
        return {};
    QImage icon(square, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.drawImage((icon.width() - page.width()) / 2, (icon.height() - page.height()) / 2, page);
    painter.end();
    icon.setDevicePixelRatio(devicePixelRatio);
    return icon;
}

QImage tinted(const QImage& icon, const QColor& color) {
    if (icon.isNull())
        return {};
    QImage result = icon.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF({}, result.deviceIndependentSize()), color);
    return result;
}

} // namespace noctra
